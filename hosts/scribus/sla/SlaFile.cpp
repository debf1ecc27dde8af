#include "hosts/scribus/sla/SlaFile.h"

#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QFile>

#include <zlib.h>
#include <cstring>

constexpr int cChunk = 64 * 1024;

// The window of zlib's largest kind, in the form of gzip.
constexpr int cGzipWindow = 15 + 16;

static const QString cNoMemory = QStringLiteral("there is not enough memory");

static GResult Unpack(const QByteArray& packed, QByteArray& text)
{
    z_stream stream = {};
    if (inflateInit2(&stream, cGzipWindow) != Z_OK)
        return GResult::Failure(cNoMemory);
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
    if (result == Z_STREAM_END)
        return GResult::Success();
    return GResult::Failure(result == Z_OK ? QStringLiteral("it is too large")
                                           : QStringLiteral("its compression is damaged"));
}

static GResult Pack(const QByteArray& text, QByteArray& packed)
{
    z_stream stream = {};
    constexpr int cMemoryLevel = 8;
    if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, cGzipWindow, cMemoryLevel,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        return GResult::Failure(cNoMemory);
    QByteArray input = text;
    packed.resize(static_cast<int>(deflateBound(&stream, static_cast<uLong>(input.size()))));
    stream.next_in = reinterpret_cast<Bytef*>(input.data());
    stream.avail_in = static_cast<uInt>(input.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.chop(static_cast<int>(stream.avail_out));
    deflateEnd(&stream);
    return result == Z_STREAM_END ? GResult::Success() : GResult::Failure(cNoMemory);
}

// Whether the first element is a document's. A text that is only a beginning may end within it.
static bool IsDocument(const QByteArray& text, bool isBeginning)
{
    SlaScanner scanner({text.constData(), static_cast<size_t>(text.size())});
    return (scanner.Next() || isBeginning) && scanner.GetName().substr(0, 7) == "SCRIBUS";
}

GResult SlaFile::CheckBeginning(const QString& path)
{
    QFile file(path);
    QString reason;
    if (OpenSharedForReading(file, cNoLargestFile, reason) != FileOpening::cOpen)
        return GResult::Failure(QStringLiteral("\"%1\" can't be opened: %2.").arg(path, reason));
    QByteArray beginning = file.read(cChunk);
    if (beginning.startsWith("\x1f\x8b")) {
        QByteArray text;
        static_cast<void>(Unpack(beginning, text));  // fails, as the rest is not there
        beginning = text;
    }
    if (IsDocument(beginning, true))
        return GResult::Success();
    return GResult::Failure(QStringLiteral("\"%1\" is no Scribus document.").arg(path));
}

GResult SlaFile::Read(const QString& path, QByteArray& text, bool& isPacked)
{
    QByteArray bytes;
    text.clear();
    return ReadSharedFile(path, cMostBytes, &bytes)
        .Then([&] {
            isPacked = bytes.startsWith("\x1f\x8b");
            if (isPacked)
                return Unpack(bytes, text);
            text = bytes;
            return GResult::Success();
        })
        .Then([&] {
            return IsDocument(text, false) ? GResult::Success()
                                           : GResult::Failure(QStringLiteral("it is no Scribus document"));
        })
        .Within(QStringLiteral("The document \"%1\" can't be read: ").arg(path), QStringLiteral("."));
}

GResult SlaFile::Write(const QString& path, const QByteArray& text, bool isPacked)
{
    QByteArray bytes = text;
    const GResult packed = isPacked ? Pack(text, bytes) : GResult::Success();
    return packed.Then([&] { return GDurableFile::Replace(path, bytes); });
}
