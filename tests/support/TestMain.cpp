#include "tests/support/ChildRoles.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

// The main of every test program: runs the tests, or, called with "--child ROLE ARG…", one role of a second
// process.
int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() >= 3 && arguments.at(1) == QLatin1String("--child"))
        return RunChildRole(arguments.at(2), arguments.mid(3));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
