#pragma once

#include "foundation/core/GResult.h"

#include <QString>
#include <QStringList>

#include <memory>

class QJsonObject;

// A book: documents in an order of their own, kept in a small JSON file,
//
//     { "format": "layout-host book", "version": 1, "title": "A Journey", "numbering": "continued",
//       "documents": ["cover.sla", "text/chapter 1.sla"] }
//
// A relative path starts at the book's folder. A document may stand in a book twice, and need not exist. For
// the main thread.
class BookFile
{
public:
    // The name's ending by which a book is told from a document.
    static constexpr const char* cExtension = "slabook";

    // Reads a book into `book`, which stays as it was when the file can't be read or is no book.
    static GResult Read(const QString& path, std::shared_ptr<BookFile>& book);

    // An empty book that has no file content yet; Save writes it.
    explicit BookFile(const QString& path);

    // The absolute path of the book's file.
    const QString& GetPath() const { return mPath; }

    // The absolute paths of its documents, in order.
    const QStringList& GetDocuments() const { return mDocuments; }

    // Sets the documents, by absolute paths. The book is modified when they are others.
    void SetDocuments(const QStringList& paths);

    // The title of the whole; the file's name without its ending where the book has none.
    QString GetTitle() const;

    // Whether page numbers go on from one document to the next. Otherwise each document has its own.
    bool IsNumberedOn() const { return mIsNumberedOn; }

    // The book is modified when it was numbered otherwise.
    void SetNumberedOn(bool isNumberedOn);

    // Takes title and numbering from another book.
    void TakeSettings(const BookFile& other);

    // Whether the file lacks something that the book holds.
    bool IsModified() const { return mIsModified; }

    // Writes the book to its file, whole or not at all; paths below the book's folder become relative.
    GResult Save();

private:
    void ReadFrom(const QJsonObject& json, const QStringList& paths);

    QString mPath;
    QStringList mDocuments;
    QString mTitle;
    bool mIsNumberedOn = false;
    bool mIsModified = true;
};
