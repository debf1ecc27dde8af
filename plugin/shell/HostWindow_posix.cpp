#include "plugin/shell/HostWindow.h"

#include <QApplication>
#include <QWidget>

WId FindHostWindow()
{
    const QWidget* window = QApplication::activeWindow();
    return window == nullptr ? 0 : window->effectiveWinId();
}

bool CanShowWindows()
{
    for (const char* variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        if (!qEnvironmentVariableIsEmpty(variable))
            return true;
    return false;
}
