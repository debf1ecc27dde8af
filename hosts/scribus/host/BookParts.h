#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/pdffile/PdfBook.h"

#include <QJsonObject>
#include <QMap>
#include <QStringList>

#include <vector>

class ScribusHost;

// What a book's command has been told of the book.
struct BookOrders
{
    QStringList documents;
    QString title;
    bool isNumberedOn = false;
};

// The PDF of each document of a book. A document that stands in it twice is exported once, unless its pages
// bear other numbers the second time. The files go with this object.
class BookParts
{
public:
    BookParts(ScribusHost& host, bool isNumberedOn) : mHost(host), mIsNumberedOn(isNumberedOn) {}
    ~BookParts();
    BookParts(const BookParts&) = delete;
    BookParts& operator=(const BookParts&) = delete;

    // Exports the next document. A failure names it.
    GResult Add(const QString& path);

    // In the book's order.
    const std::vector<PdfBookPart>& GetList() const { return mList; }

    // The settings once, what the PDFs hold one after the other; each note says which document it is about.
    QJsonObject GetReport() const;

private:
    struct Part
    {
        QString file;
        QStringList pageNumbers;
        int nextNumber = 0;
    };

    GResult Export(const QString& path, Part& part);
    QString GetName(const QString& path) const;

    ScribusHost& mHost;
    bool mIsNumberedOn;
    int mNumber = 1;            // of the next page, where pages are numbered on
    QMap<QString, Part> mKept;  // by document, where its pages bear its own numbers
    QStringList mFiles;
    std::vector<PdfBookPart> mList;
    std::vector<std::pair<QString, QJsonObject>> mReports;  // by name of the document
};
