#include "hosts/scribus/sla/SlaFile.h"

#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QFile>

#include <zlib.h>
#include <cstring>

constexpr int cChunk = 64 * 1024;

// The window of zlib's largest kind, in the form of gzip.
constexpr int cGzipWindow = 15 + 16;

static bool Unpack(const QByteArray& packed, QByteArray& text, QString& reason)
{
    z_stream stream = {};
    if (inflateInit2(&stream, cGzipWindow) != Z_OK)
        return false;
    QByteArray input = packed;
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    QByteArray chunk(cChunk, Qt::Uninitialized);
    int result = Z_OK;
    while (result == Z_OK && text.size() <= SlaFile::cMostBytes) {
        stream.next_out = reinterpret_cast<Bytef*>(chunk.data());
        stream.avail_out = cChunk;
        result = inflate(&stream, Z_NO_FLUSH);
        text.append(chunk.constData(), cChunk - static_cast<int>(stream.avail_out));
    }
    inflateEnd(&stream);
    if (result != Z_STREAM_END)
        reason =
            result == Z_OK ? QStringLiteral("it is too large") : QStringLiteral("its compression is damaged");
    return result == Z_STREAM_END;
}

// Null when there is not enough memory; nothing else can go wrong.
static QByteArray Pack(const QByteArray& text)
{
    z_stream stream = {};
    constexpr int cMemoryLevel = 8;
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, cGzipWindow, cMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        return {};
    QByteArray input = text;
    QByteArray packed(static_cast<int>(deflateBound(&stream, static_cast<uLong>(input.size()))),
                      Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.chop(static_cast<int>(stream.avail_out));
    deflateEnd(&stream);
    return result == Z_STREAM_END ? packed : QByteArray();
}

// Whether the first element is a document's. A text that is only a beginning may end within it.
static bool IsDocument(const QByteArray& text, bool isBeginning)
{
    SlaScanner scanner({text.constData(), static_cast<size_t>(text.size())});
    return (scanner.Next() || isBeginning) && scanner.GetName().substr(0, 7) == "SCRIBUS";
}

bool SlaFile::CheckBeginning(const QString& path, QString& reason)
{
    QFile file(path);
    if (OpenSharedForReading(file, cNoLargestFile, reason) != FileOpening::cOpen) {
        reason = QStringLiteral("\"%1\" can't be opened: %2.").arg(path, reason);
        return false;
    }
    QByteArray beginning = file.read(cChunk);
    if (beginning.startsWith("\x1f\x8b")) {
        QByteArray text;
        QString cut;  // as the rest is not there
        Unpack(beginning, text, cut);
        beginning = text;
    }
    const bool isDocument = IsDocument(beginning, true);
    if (!isDocument)
        reason = QStringLiteral("\"%1\" is no Scribus document.").arg(path);
    return isDocument;
}

bool SlaFile::Read(const QString& path, QByteArray& text, bool& isPacked, QString& reason)
{
    QByteArray bytes;
    text.clear();
    bool isRead = ReadSharedFile(path, cMostBytes, &bytes, reason);
    isPacked = bytes.startsWith("\x1f\x8b");
    if (isRead && isPacked)
        isRead = Unpack(bytes, text, reason);
    else
        text = bytes;
    if (isRead && !IsDocument(text, false)) {
        reason = QStringLiteral("it is no Scribus document");
        isRead = false;
    }
    if (!isRead)
        reason = QStringLiteral("The document \"%1\" can't be read: %2.").arg(path, reason);
    return isRead;
}

bool SlaFile::Write(const QString& path, const QByteArray& text, bool isPacked, QString& reason)
{
    const QByteArray bytes = isPacked ? Pack(text) : text;
    if (isPacked && bytes.isNull()) {
        reason = QStringLiteral("there is not enough memory to compress it");
        return false;
    }
    try {
        GDurableFile file{GPathName(path)};
        file.Write(bytes.constData(), bytes.size());
        file.Commit();
    } catch (const GException& error) {
        reason = error.GetDescription();
        return false;
    }
    return true;
}
