#include "hosts/scribus/books/BookFile.h"

#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

static const QLatin1String cFormatName("layout-host book");
constexpr int cFormatVersion = 1;

// A book of so many documents, or of so many bytes, is none.
constexpr int cMostDocuments = 10000;
constexpr qint64 cMostBytes = 8 * 1024 * 1024;

static QString MakeAbsolute(const QDir& folder, const QString& path)
{
    return QDir::cleanPath(folder.absoluteFilePath(path));
}

// The documents of a book's text, as they stand there. False, with the reason, when it is no book.
static bool ReadPaths(const QByteArray& text, QStringList& paths, QString& reason)
{
    QJsonParseError error;
    const QJsonObject book = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        reason = QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset);
    else if (book.value(QLatin1String("format")).toString() != cFormatName)
        reason = QStringLiteral("it does not call itself a %1").arg(cFormatName);
    else if (book.value(QLatin1String("version")).toInt() != cFormatVersion)
        reason = QStringLiteral("its version is not %1").arg(cFormatVersion);
    const QJsonArray documents = book.value(QLatin1String("documents")).toArray();
    if (reason.isEmpty() && documents.size() > cMostDocuments)
        reason = QStringLiteral("it lists more than %1 documents").arg(cMostDocuments);
    for (const QJsonValue& document : documents) {
        if (reason.isEmpty() && document.toString().isEmpty())
            reason = QStringLiteral("it lists a document without a path");
        paths.append(document.toString());
    }
    return reason.isEmpty();
}

BookFile::BookFile(const QString& path) : mPath(MakeAbsolute(QDir(), path)) {}

std::unique_ptr<BookFile> BookFile::Read(const QString& path, QString& reason)
{
    reason.clear();
    auto book = std::make_unique<BookFile>(path);
    QByteArray text;
    QStringList paths;
    if (ReadSharedFile(book->mPath, cMostBytes, &text, reason))
        ReadPaths(text, paths, reason);
    if (!reason.isEmpty()) {
        reason = QStringLiteral("The book \"%1\" can't be read: %2.").arg(book->mPath, reason);
        return nullptr;
    }
    const QDir folder = QFileInfo(book->mPath).dir();
    for (const QString& document : paths)
        book->mDocuments.append(MakeAbsolute(folder, document));
    book->mIsModified = false;
    return book;
}

void BookFile::SetDocuments(const QStringList& paths)
{
    mIsModified = mIsModified || paths != mDocuments;
    mDocuments = paths;
}

bool BookFile::Save(QString& reason)
{
    const QDir folder = QFileInfo(mPath).dir();
    QJsonArray documents;
    for (const QString& path : mDocuments) {
        const QString relative = folder.relativeFilePath(path);
        documents.append(relative.startsWith(QLatin1String("../")) ? path : relative);
    }
    const QJsonObject book{{QStringLiteral("format"), cFormatName},
                           {QStringLiteral("version"), cFormatVersion},
                           {QStringLiteral("documents"), documents}};
    const QByteArray text = QJsonDocument(book).toJson();
    try {
        GDurableFile file{GPathName(mPath)};
        file.Write(text.constData(), text.size());
        file.Commit();
    } catch (const GException& error) {
        reason = error.GetDescription();
        return false;
    }
    mIsModified = false;
    return true;
}
