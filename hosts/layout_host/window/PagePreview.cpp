#include "hosts/layout_host/window/PagePreview.h"

#include <QPainter>

namespace
{
constexpr int cMargin = 28;  // of the pasteboard around the page, in pixels
constexpr int cShadow = 4;

// Where a page of a size stands: in the middle, as large as the room allows.
QRect PlacePage(const QSizeF& size, const QRect& room)
{
    const QSize scaled = size.scaled(QSizeF(room.size()), Qt::KeepAspectRatio).toSize();
    QRect page(QPoint(), scaled.expandedTo(QSize(1, 1)));
    page.moveCenter(room.center());
    return page;
}
}  // namespace

PagePreview::PagePreview(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(240, 240);
}

PagePreview::~PagePreview() = default;

void PagePreview::ShowPage(const QSizeF& size, const QImage& image, const QString& text)
{
    mSize = size;
    mImage = image;
    mText = text;
    update();
}

QSize PagePreview::sizeHint() const
{
    return {520, 640};
}

void PagePreview::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.fillRect(rect(), palette().color(QPalette::Mid).lighter(115));
    QRect place = rect().adjusted(cMargin, cMargin, -cMargin, -cMargin);
    if (!mSize.isEmpty()) {
        place = PlacePage(mSize, place);
        painter.fillRect(place.translated(cShadow, cShadow), QColor(0, 0, 0, 70));
        painter.fillRect(place, Qt::white);
        if (!mImage.isNull())
            painter.drawImage(place,
                              mImage.scaled(place.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
        painter.setPen(QColor(0, 0, 0, 110));
        painter.drawRect(place.adjusted(0, 0, -1, -1));
    }
    painter.setPen(mSize.isEmpty() ? palette().color(QPalette::WindowText) : QColor(90, 90, 90));
    painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, mText);
}
