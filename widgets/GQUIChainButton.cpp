#include "widgets/GQUIChainButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOptionToolButton>

GQUIChainButton::GQUIChainButton(QWidget* parent) : QAbstractButton(parent)
{
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize GQUIChainButton::sizeHint() const
{
    const int height = fontMetrics().height();
    return {height * 3 / 2, height * 2};
}

void GQUIChainButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionToolButton option;
    option.initFrom(this);
    option.subControls = QStyle::SC_ToolButton;
    option.state |= isDown() ? QStyle::State_Sunken : (isChecked() ? QStyle::State_On : QStyle::State_Raised);
    style()->drawComplexControl(QStyle::CC_ToolButton, &option, &painter, this);

    // Two links, one above the other; their middle bar is what the open chain lacks.
    const QRectF area = rect();
    const double unit = area.height() / 10;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(option.palette.color(QPalette::ButtonText), unit * 0.7, Qt::SolidLine, Qt::RoundCap));
    const double gap = isChecked() ? 0.1 : 0.8;
    const QPointF centre = area.center();
    const QSizeF link(unit * 2.6, unit * 3);
    painter.drawRoundedRect(
        QRectF({centre.x() - link.width() / 2, centre.y() - unit * gap - link.height()}, link), unit, unit);
    painter.drawRoundedRect(QRectF({centre.x() - link.width() / 2, centre.y() + unit * gap}, link), unit,
                            unit);
    if (isChecked())
        painter.drawLine(centre - QPointF(0, unit * 1.5), centre + QPointF(0, unit * 1.5));
}
