#pragma once

#include "hosts/scribus/pdffile/PdfFile.h"

#include <QStringList>

#include <memory>
#include <vector>

// One document's PDF in that of a book.
struct PdfBookPart
{
    QString path;
    QString name;             // of the document, for its bookmark
    QStringList pageNumbers;  // that its pages bear
};

// Joins the PDFs of a book's documents: all pages in order, which show the numbers that they bear, and a
// bookmark for each document, under which its own bookmarks stand. What a PDF says once for all, such as the
// mark of PDF/X, comes from the first. Nothing here throws.
class PdfBook
{
public:
    explicit PdfBook(const QString& title) : mTitle(title) {}
    PdfBook(const PdfBook&) = delete;
    PdfBook& operator=(const PdfBook&) = delete;

    // Adds a document behind the others. One file may be added twice. False, with the reason, when it can't
    // be read, or is meant for another press than the first one. The file stays there until Write.
    GResult Add(const PdfBookPart& part);

    // Writes the whole; what the wishes say of the file as such is done. Only after something was added.
    GResult Write(const QString& path, const PdfWishes& wishes);

private:
    void AddPart(const PdfBookPart& part);
    void AddPages(QPDF& pdf);
    void AddBookmark(QPDF& pdf, const PdfBookPart& part, int firstPage);
    void AddLabels(const PdfBookPart& part, int firstPage);
    void FinishBookmarks();
    void SetTitle();

    QString mTitle;
    std::vector<std::unique_ptr<QPDF>> mParts;  // the first becomes the whole
    std::string mIntents;                       // of the first part
    std::vector<QPDFObjectHandle> mBookmarks;
    std::vector<QPDFObjectHandle> mLabels;  // as a number tree has them: an index and a label, and so on
};
