#include "tests/support/WindowDriver.h"

#include <QApplication>

// For a host without Qt of its own, such as a script: presses Enter in the first window that becomes modal.
// To be called once the plug-in's actions are open.
extern "C" Q_DECL_EXPORT void PressEnterInTheNextWindow()
{
    auto* const timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, timer, [timer] {
        const QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isActiveWindow())
            return;
        timer->stop();
        WindowDriver::Click(Qt::Key_Return);
    });
    timer->start(10);
}
