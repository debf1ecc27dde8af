#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/pdffile/PdfImages.h"

#include <QString>

#include <memory>

// What a finished PDF is to have that Scribus's export does not give it.
struct PdfWishes
{
    PdfImageRules images;

    QString version;  // "1.6"; empty: as it is written
    bool compressesObjects = false;
    bool isLinear = false;  // its first page can be shown before the rest is there
    bool compressesText = true;

    bool keepsProfiles = true;  // otherwise, colours of the document are those of the device
    double markWeight = -1;     // of crop, bleed and registration marks, in points; below 0: Scribus's

    // Of a PDF/X; empty texts leave what is there.
    bool isX = false;
    bool mayBeTransparent = true;
    QString condition;
    QString conditionIdentifier;
    QString registry;
    QString trapped;  // "True", "False", "Unknown"
};

// A PDF that Scribus has written: what is in it, and how it becomes what was asked for. Nothing here throws;
// what a file lacks or can't be read is a failure with a reason. The file itself stays as it is.
class PdfFile
{
public:
    PdfFile();
    ~PdfFile();
    PdfFile(const PdfFile&) = delete;
    PdfFile& operator=(const PdfFile&) = delete;

    // Reads the file's table of objects, its pages and their content. Fails for a file that is damaged or
    // ends too early: nothing is repaired.
    GResult Open(const QString& path);

    int CountPages() const { return mPageCount; }

    // Whether its entries say that it is a PDF/X.
    bool BearsMarkOfX() const;

    // What its pages show. Only after Open has succeeded.
    const PdfScan& GetScan() const { return *mScan; }

    // Does to the content what is wished. `isCancelled` is asked now and then.
    GResult Change(const PdfWishes& wishes, const PdfImages::IsGray& isGray,
                   const std::function<bool()>& isCancelled);

    // Writes the PDF to another file.
    GResult Write(const QString& path, const PdfWishes& wishes);

    // The same for a PDF of the library's; throws what the library throws.
    static void WriteTo(QPDF& pdf, const QString& path, const PdfWishes& wishes);

private:
    void SetWeightOfMarks(double points, bool isCompressed);
    void DropProfiles();
    void DropGroups();
    void SetIntent(const PdfWishes& wishes);
    void SetTrapped(const QString& trapped);

    std::unique_ptr<QPDF> mPdf;
    std::unique_ptr<PdfScan> mScan;
    int mPageCount = 0;
};
