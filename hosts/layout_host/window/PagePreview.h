#pragma once

#include <QImage>
#include <QSizeF>
#include <QWidget>

// Shows one page of a document on a pasteboard, as large as there is room for. Without an image it shows an
// empty page of the size, with a text on it; without a size only the text.
class PagePreview : public QWidget
{
public:
    explicit PagePreview(QWidget* parent);
    ~PagePreview() override;

    // The size is the page's, in points; the image may be null.
    void ShowPage(const QSizeF& size, const QImage& image, const QString& text);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QSizeF mSize;
    QImage mImage;
    QString mText;
};
