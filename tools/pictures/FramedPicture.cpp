#include "FramedPicture.h"

#include <QPainter>
#include <QWidget>

QImage DrawFramed(QWidget& window, const QString& title)
{
    const QPixmap content = window.grab();
    const qreal ratio = content.devicePixelRatio();
    const QSize size = content.size() / ratio;
    QImage image((size + QSize(2, cTitleHeight + 1)) * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    const QPalette palette = window.palette();
    image.fill(palette.color(QPalette::Dark));
    QPainter painter(&image);
    painter.fillRect(1, 1, size.width(), cTitleHeight - 2, palette.color(QPalette::Button));
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QRect(0, 0, size.width(), cTitleHeight), Qt::AlignCenter, title);
    painter.drawPixmap(1, cTitleHeight, content);
    return image;
}
