#include <QApplication>

#include <gtest/gtest.h>

// The main of test programs with windows, which stay off the screen.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
