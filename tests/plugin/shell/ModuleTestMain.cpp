#include <QByteArray>

#include <gtest/gtest.h>

// A host that is no Qt program: no application of Qt's unless a test makes one.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
