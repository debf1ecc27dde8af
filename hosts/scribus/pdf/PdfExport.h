#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/pdf/PdfCheck.h"
#include "hosts/scribus/pdf/PdfSettings.h"
#include "hosts/scribus/pdffile/PdfBook.h"

#include <QStringList>
#include <QVector>

#include <vector>

class ScribusDocument;
class ScribusRunner;
struct ScribusAnswer;

// Makes PDF files with one set of settings. A file appears under its name only when it is whole and was
// checked; whatever fails, no part of it stays. For the main thread.
class PdfExport
{
public:
    PdfExport(ScribusRunner& runner, const PdfSettings& settings) : mRunner(runner), mSettings(settings) {}

    // Writes the pages, by indexes from 0, in their order. Fails where a font is missing, the document is
    // changed while it is exported, or it can't be what a PDF/X kind asks for. Where an image or a colour
    // profile is missing, or an image has fewer dots than the settings allow, the frontend decides, before
    // the export where that can be seen there; without one it fails.
    GResult ExportPages(ScribusDocument& document, const QVector<int>& pages, const QString& output);

    // From now on, pages are numbered from here, not as their document says.
    void SetFirstNumber(int firstNumber) { mFirstNumber = firstNumber; }

    // Of the last document: the numbers that its pages bear, and the one for the first page behind it, where
    // SetFirstNumber was called.
    const QStringList& GetPageNumbers() const { return mPageNumbers; }
    int GetNextNumber() const { return mNextNumber; }

    // Writes one PDF with all pages of the others, in the order of the list, under the title. Fails, and
    // names the document, where one is meant for another press than the first.
    GResult Join(const std::vector<PdfBookPart>& parts, const QString& title, const QString& output);

    // What became of the last PDF, for people and scripts: "settings" that were not honoured as they stand,
    // "images" as they came out of Scribus, "fonts", and "notes".
    QJsonObject GetReport() const;

private:
    struct Paths
    {
        QString written;  // by Scribus
        QString probe;
        QString finished;
    };

    GResult Check(ScribusDocument& document, const QVector<int>& pages) const;
    QJsonObject MakeRequest(const DocumentInfo& info, const QString& source, const QVector<int>& pages,
                            const Paths& paths) const;
    ScribusAnswer RunScribus(QJsonObject request, const Paths& paths, bool embedsPlaced) const;
    GResult Permit(const QString& documentName, const QStringList& problems);
    GResult FinishPdf(PdfCheck& check, const Paths& paths, const QString& documentName, bool embedsPlaced,
                      bool& isWorthAnother);
    GResult ChangePdf(PdfFile& pdf, const PdfCheck& check, const QString& path);
    GResult OpenPdf(PdfFile& pdf, const QString& path, int pageCount, bool isResult = true) const;
    GResult Finish(const GResult& result, const QString& part, const QString& output) const;

    ScribusRunner& mRunner;
    PdfSettings mSettings;
    QJsonObject mReport;
    QStringList mNotes;
    QStringList mPageNumbers;
    int mFirstNumber = 0;  // 0: as the document says
    int mNextNumber = 0;
};
