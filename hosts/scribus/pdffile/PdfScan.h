#pragma once

#include <QMap>
#include <QRectF>
#include <QString>

#include <qpdf/QPDF.hh>

#include <map>
#include <vector>

// An image of a PDF, and where it is shown. Boxes are in points from the top left corner of the page's trim
// box, downwards, as documents count.
struct PdfImage
{
    QPDFObjectHandle object;
    int page = 0;           // the first page that shows it, from 0
    QRectF box;             // on that page
    double resolution = 0;  // in dots per inch, where it is shown largest
    bool isInPlacedFile = false;
};

// Something on a page that not every kind of PDF may have.
struct PdfFinding
{
    enum class Kind
    {
        Transparency,
        DeviceRgb,     // colours of no certain appearance
        TaggedColor,   // colours with a profile, or measured ones
        FontNotInside  // a font that the reader has to have
    };

    Kind kind;
    int page;             // from 0
    QRectF box;           // of the image or placed file that has it; empty for the page itself
    bool isInPlacedFile;  // or in another form that the page shows
    QString name;         // of a font
};

// What the pages of a PDF show: goes through their content once, into the forms that they place.
//
// Linear in the content; a form that is placed many times is gone through each time, to a bounded total.
class PdfScan
{
public:
    // Throws what the library throws for content that can't be read.
    explicit PdfScan(QPDF& pdf);

    // Each image once, masks of other images not among them.
    const std::map<QPDFObjGen, PdfImage>& GetImages() const { return mImages; }

    // In the order of the pages. Of a kind, each page and placed file is told once.
    const std::vector<PdfFinding>& GetFindings() const { return mFindings; }

    // The names of the fonts that texts use, without the mark of a subset.
    const QMap<QString, bool>& GetFonts() const { return mFonts; }

    // Whether an image's mask lets something shine through: a mask that only cuts out does not.
    static bool IsHalfTransparent(QPDFObjectHandle image);

private:
    friend class PdfContentReader;

    void Add(const PdfFinding& finding);

    std::map<QPDFObjGen, PdfImage> mImages;
    std::vector<PdfFinding> mFindings;
    QMap<QString, bool> mFonts;  // and whether the font is inside
    int mFormCount = 0;
};
