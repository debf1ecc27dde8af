#pragma once

#include "hosts/scribus/pdf/PdfSettings.h"
#include "hosts/scribus/sla/DocumentInfo.h"

#include <QStringList>
#include <QVector>

class ScribusRunner;

// Looks at a document before it is exported for what would leave a hole in its PDF or make it worse than the
// settings allow: Scribus says nothing of that.
class Preflight
{
public:
    // For an export of the pages, by indexes from 0.
    Preflight(const PdfSettings& settings, const DocumentInfo& info, const QVector<int>& pages)
        : mSettings(settings), mInfo(info), mPages(pages)
    {
    }

    // A sentence for each image that is missing, can't be read, or has fewer dots than the settings call an
    // error, and for each missing colour profile. Images that these pages don't print are left out.
    QStringList FindProblems(ScribusRunner& runner) const;

    // The colour profiles that the document manages its colours by and Scribus does not have.
    static QStringList FindMissingProfiles(const DocumentInfo& info, ScribusRunner& runner);

    // The sentence for an image, named by the text, with fewer dots per inch than the rule wants; empty for
    // any other.
    static QString TellLack(const QString& image, double resolution, const PdfImageRule& rule);

private:
    int FindPage(const DocumentImage& image) const;
    const PdfImageRule& FindRule(const QString& path) const;

    const PdfSettings& mSettings;
    const DocumentInfo& mInfo;
    const QVector<int>& mPages;
};
