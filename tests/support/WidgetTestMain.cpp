#include "tests/support/ChildRoles.h"

#include <QApplication>

// The main of test programs with windows, which stay off the screen.
int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    return RunTests(argc, argv);
}
