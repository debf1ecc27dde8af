#include "plugin/shell/HostWindow.h"

#include <QApplication>
#include <QWidget>

WId FindHostWindow()
{
    const QWidget* window = QApplication::activeWindow();
    return window == nullptr ? 0 : window->effectiveWinId();
}
