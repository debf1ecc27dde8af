#include "XServer.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <memory>

std::unique_ptr<XServer> xServer;

// Tests on a real X server; a list of them needs none.
int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    xServer = std::make_unique<XServer>();
    int status = 1;
    {
        const QApplication application(argc, argv);
        status = RUN_ALL_TESTS();
    }
    xServer.reset();
    return status;
}
