#include "tests/support/ChildRoles.h"

#include <QCoreApplication>

// The main of test programs without windows.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return RunTests(argc, argv);
}
