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
static const QLatin1String cTitleKey("title");
static const QLatin1String cNumberingKey("numbering");
static const QLatin1String cNumberedOn("continued");
static const QLatin1String cOwnNumbers("own");

// A book of so many documents, or of so many bytes, is none.
constexpr int cMostDocuments = 10000;
constexpr qint64 cMostBytes = 8 * 1024 * 1024;

static QString MakeAbsolute(const QDir& folder, const QString& path)
{
    return QDir::cleanPath(folder.absoluteFilePath(path));
}

// The JSON of a book's text; with the reason when it is no book.
static QJsonObject ReadJson(const QByteArray& text, QString& reason)
{
    QJsonParseError error;
    const QJsonObject book = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        reason = QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset);
    else if (book.value(QLatin1String("format")).toString() != cFormatName)
        reason = QStringLiteral("it does not call itself a %1").arg(cFormatName);
    else if (book.value(QLatin1String("version")).toInt() != cFormatVersion)
        reason = QStringLiteral("its version is not %1").arg(cFormatVersion);
    const QString numbering = book.value(cNumberingKey).toString(cOwnNumbers);
    if (reason.isEmpty() && numbering != cOwnNumbers && numbering != cNumberedOn)
        reason = QStringLiteral("its \"%1\" is neither \"%2\" nor \"%3\"")
                     .arg(cNumberingKey, cOwnNumbers, cNumberedOn);
    return book;
}

// The documents of a book, as they stand there. Empty, with the reason, when it is no book.
static QStringList ReadPaths(const QJsonObject& book, QString& reason)
{
    QStringList paths;
    const QJsonArray documents = book.value(QLatin1String("documents")).toArray();
    if (reason.isEmpty() && documents.size() > cMostDocuments)
        reason = QStringLiteral("it lists more than %1 documents").arg(cMostDocuments);
    for (const QJsonValue& document : documents) {
        if (reason.isEmpty() && document.toString().isEmpty())
            reason = QStringLiteral("it lists a document without a path");
        paths.append(document.toString());
    }
    return paths;
}

BookFile::BookFile(const QString& path) : mPath(MakeAbsolute(QDir(), path)) {}

std::unique_ptr<BookFile> BookFile::Read(const QString& path, QString& reason)
{
    reason.clear();
    auto book = std::make_unique<BookFile>(path);
    QByteArray text;
    QStringList paths;
    if (ReadSharedFile(book->mPath, cMostBytes, &text, reason)) {
        const QJsonObject json = ReadJson(text, reason);
        paths = ReadPaths(json, reason);
        book->mTitle = json.value(cTitleKey).toString();
        book->mIsNumberedOn = json.value(cNumberingKey).toString() == cNumberedOn;
    }
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

QString BookFile::GetTitle() const
{
    return mTitle.isEmpty() ? QFileInfo(mPath).completeBaseName() : mTitle;
}

void BookFile::SetNumberedOn(bool isNumberedOn)
{
    mIsModified = mIsModified || isNumberedOn != mIsNumberedOn;
    mIsNumberedOn = isNumberedOn;
}

void BookFile::TakeSettings(const BookFile& other)
{
    mTitle = other.mTitle;
    mIsNumberedOn = other.mIsNumberedOn;
}

bool BookFile::Save(QString& reason)
{
    const QDir folder = QFileInfo(mPath).dir();
    QJsonArray documents;
    for (const QString& path : mDocuments) {
        const QString relative = folder.relativeFilePath(path);
        documents.append(relative.startsWith(QLatin1String("../")) ? path : relative);
    }
    QJsonObject book{{QStringLiteral("format"), cFormatName},
                     {QStringLiteral("version"), cFormatVersion},
                     {QStringLiteral("documents"), documents}};
    if (!mTitle.isEmpty())
        book.insert(cTitleKey, mTitle);
    if (mIsNumberedOn)
        book.insert(cNumberingKey, cNumberedOn);
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
