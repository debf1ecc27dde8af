#include "FramedPicture.h"

#include "hosts/layout_host/window/HostWindow.h"

#include <QAction>
#include <QApplication>
#include <QPainter>
#include <QTimer>

#include <cstdlib>

// Draws the window of layout-host with files open and the plug-in's dialog before it, as a PNG.
// usage: window_picture PNG FILE…

namespace
{
void Save(HostWindow& window, QWidget& dialog, const QString& path)
{
    QImage picture = DrawFramed(window, window.windowTitle() + QStringLiteral(" \u2014 Layout Host"));
    const QPixmap front = dialog.grab();
    const QPoint place(picture.width() / 2 - front.width() / 2, picture.height() / 2 - front.height() / 2);
    QPainter painter(&picture);
    painter.fillRect(QRect(place, front.size()).translated(6, 6), QColor(0, 0, 0, 70));
    QRect frame(place, front.size());
    frame.adjust(-1, -cTitleHeight, 0, 0);
    painter.fillRect(frame, dialog.palette().color(QPalette::Button));
    painter.drawText(QRect(frame.topLeft(), QSize(frame.width(), cTitleHeight)), Qt::AlignCenter,
                     dialog.windowTitle());
    painter.drawPixmap(place, front);
    painter.setPen(QColor(0, 0, 0, 120));
    painter.drawRect(frame.adjusted(0, 0, -1, 0));
    painter.end();
    std::exit(picture.save(path) ? EXIT_SUCCESS : EXIT_FAILURE);
}
}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments().mid(1);
    HostWindow window((ScribusSetup()));
    window.resize(1360, 880);
    window.show();
    window.Start(arguments.mid(1));
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (QWidget* dialog = QApplication::activeModalWidget())
            Save(window, *dialog, arguments.value(0));
    });
    // The page is drawn after the window; then the menu entry is chosen by its shortcut.
    QTimer::singleShot(3000, [&] {
        watch.start(500);
        for (QAction* action : window.findChildren<QAction*>()) {
            if (action->shortcut() == QKeySequence(QStringLiteral("Alt+Shift+E")))
                action->trigger();
        }
    });
    return QApplication::exec();
}
