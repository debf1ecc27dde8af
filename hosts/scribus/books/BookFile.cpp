#include "hosts/scribus/books/BookFile.h"

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

// Whether an object is a book of a form that this program knows.
static GResult CheckForm(const QJsonObject& book)
{
    if (book.value(QLatin1String("format")).toString() != cFormatName)
        return GResult::Failure(QStringLiteral("it does not call itself a %1").arg(cFormatName));
    if (book.value(QLatin1String("version")).toInt() != cFormatVersion)
        return GResult::Failure(QStringLiteral("its version is not %1").arg(cFormatVersion));
    const QString numbering = book.value(cNumberingKey).toString(cOwnNumbers);
    if (numbering != cOwnNumbers && numbering != cNumberedOn)
        return GResult::Failure(QStringLiteral("its \"%1\" is neither \"%2\" nor \"%3\"")
                                    .arg(cNumberingKey, cOwnNumbers, cNumberedOn));
    return GResult::Success();
}

static GResult ReadJson(const QByteArray& text, QJsonObject& book)
{
    QJsonParseError error;
    book = QJsonDocument::fromJson(text, &error).object();
    if (error.error != QJsonParseError::NoError)
        return GResult::Failure(QStringLiteral("%1 at byte %2").arg(error.errorString()).arg(error.offset));
    return CheckForm(book);
}

// The documents of a book, as they stand there.
static GResult ReadPaths(const QJsonObject& book, QStringList& paths)
{
    const QJsonArray documents = book.value(QLatin1String("documents")).toArray();
    if (documents.size() > cMostDocuments)
        return GResult::Failure(QStringLiteral("it lists more than %1 documents").arg(cMostDocuments));
    for (const QJsonValue& document : documents) {
        if (document.toString().isEmpty())
            return GResult::Failure(QStringLiteral("it lists a document without a path"));
        paths.append(document.toString());
    }
    return GResult::Success();
}

BookFile::BookFile(const QString& path) : mPath(MakeAbsolute(QDir(), path)) {}

GResult BookFile::Read(const QString& path, std::shared_ptr<BookFile>& book)
{
    const auto read = std::make_shared<BookFile>(path);
    QByteArray text;
    QJsonObject json;
    QStringList paths;
    return ReadSharedFile(read->mPath, cMostBytes, &text)
        .Then([&] { return ReadJson(text, json); })
        .Then([&] { return ReadPaths(json, paths); })
        .Then([&] {
            read->ReadFrom(json, paths);
            book = read;
            return GResult::Success();
        })
        .Within(QStringLiteral("The book \"%1\" can't be read: ").arg(read->mPath), QStringLiteral("."));
}

void BookFile::ReadFrom(const QJsonObject& json, const QStringList& paths)
{
    const QDir folder = QFileInfo(mPath).dir();
    for (const QString& document : paths)
        mDocuments.append(MakeAbsolute(folder, document));
    mTitle = json.value(cTitleKey).toString();
    mIsNumberedOn = json.value(cNumberingKey).toString() == cNumberedOn;
    mIsModified = false;
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

GResult BookFile::Save()
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
    const GResult written = GDurableFile::Replace(mPath, QJsonDocument(book).toJson());
    mIsModified = mIsModified && !written.HasSucceeded();
    return written;
}
