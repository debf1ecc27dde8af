#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/pdf/PdfSettings.h"
#include "hosts/scribus/sla/DocumentInfo.h"

#include <QJsonObject>
#include <QVector>

// Looks at a PDF that Scribus has made of pages of a document, for what the settings don't allow. What it
// finds is told with the page, as the document numbers it, and the file that is shown there.
class PdfCheck
{
public:
    PdfCheck(const PdfSettings& settings, const DocumentInfo& info, const QVector<int>& pages)
        : mSettings(settings), mInfo(info), mPages(pages)
    {
    }

    // Fails where something shines through and must not. For the probe, in which Scribus has made nothing
    // solid.
    GResult CheckTransparency(const PdfFile& pdf) const;

    // Fails where colours or fonts are none that the kind of PDF/X allows. `isPlaced` says whether all of
    // them are in placed files.
    GResult CheckForX(const PdfFile& pdf, bool& isPlaced) const;

    // The images with too few dots where the settings refuse that, a sentence for each.
    QStringList CheckImages(const PdfFile& pdf);

    // Fails where a font is not inside, and the settings refuse that.
    GResult CheckFonts(const PdfFile& pdf);

    // Whether an image is one of grays in the file that the document links.
    bool IsGray(const PdfImage& image) const;

    // The pages that the PDF has to have.
    int CountPages() const { return mPages.size(); }

    bool ManagesColors() const { return mInfo.managesColors; }

    // What the PDF holds: its images as they came out of Scribus, its fonts, and what the settings want told.
    QJsonObject Describe(const PdfFile& pdf) const;

private:
    QString GetPageText(int place) const;
    QString GetPlaceText(int place, const QRectF& box, const QString& what) const;
    const DocumentImage* FindImage(int place, const QRectF& box) const;
    bool IsForbidden(PdfFinding::Kind kind) const;

    PdfSettings mSettings;
    DocumentInfo mInfo;
    QVector<int> mPages;
    QStringList mNotes;
};
