#include "hosts/scribus/sla/FontHeader.h"

#include "foundation/core/SharedFile.h"

#include <QFile>
#include <QtEndian>

namespace
{
constexpr int cMostTables = 256;  // no font has more

// Bytes at a place of a file; shorter where it ends.
QByteArray ReadAt(QIODevice& file, qint64 offset, qint64 length)
{
    return file.seek(offset) ? file.read(length) : QByteArray();
}

quint32 GetNumber32(const QByteArray& bytes, int offset)
{
    return bytes.size() >= offset + 4 ? qFromBigEndian<quint32>(bytes.constData() + offset) : 0;
}

quint16 GetNumber16(const QByteArray& bytes, int offset)
{
    return bytes.size() >= offset + 2 ? qFromBigEndian<quint16>(bytes.constData() + offset) : 0;
}

// Of several rights, the one that allows most holds.
QString GetEmbeddingText(quint16 rights)
{
    constexpr quint16 cEditable = 8;
    constexpr quint16 cPreview = 4;
    constexpr quint16 cRestricted = 2;
    constexpr quint16 cNoSubset = 0x100;
    QString text = (rights & cEditable) != 0     ? QStringLiteral("editable")
                   : (rights & cPreview) != 0    ? QStringLiteral("preview and print")
                   : (rights & cRestricted) != 0 ? QStringLiteral("restricted")
                                                 : QStringLiteral("installable");
    if ((rights & cNoSubset) != 0)
        text += QStringLiteral(", whole only");
    return text;
}

// The rights stand in the table "OS/2" of the font that begins at the offset.
QString FindEmbedding(QIODevice& file, qint64 start)
{
    const int tables = qMin<int>(GetNumber16(ReadAt(file, start, 6), 4), cMostTables);
    constexpr int cRecord = 16;
    const QByteArray directory = ReadAt(file, start + 12, qint64(tables) * cRecord);
    for (int at = 0; at + cRecord <= directory.size(); at += cRecord) {
        if (directory.mid(at, 4) != "OS/2")
            continue;
        const QByteArray table = ReadAt(file, GetNumber32(directory, at + 8), 10);
        return table.size() == 10 ? GetEmbeddingText(GetNumber16(table, 8)) : QString();
    }
    return {};
}

const FontHeader cUnknown{QStringLiteral("unknown"), QStringLiteral("not stated")};
}  // namespace

FontHeader FontHeader::Read(const QString& path)
{
    QFile file(path);
    QString reason;
    const bool isOpen = OpenSharedForReading(file, cNoLargestFile, reason) == FileOpening::cOpen;
    return isOpen ? Parse(file) : cUnknown;
}

FontHeader FontHeader::Parse(QIODevice& file)
{
    FontHeader header = cUnknown;
    const QByteArray start = ReadAt(file, 0, 16);
    const bool isCollection = start.startsWith("ttcf");
    if (start.startsWith("OTTO"))
        header.kind = QStringLiteral("OpenType");
    else if (start.startsWith(QByteArray("\0\1\0\0", 4)) || start.startsWith("true"))
        header.kind = QStringLiteral("TrueType");
    else if (isCollection)
        header.kind = QStringLiteral("TrueType collection");
    else if (start.startsWith("%!PS") || start.startsWith("%!Font") || start.startsWith("\x80\x01"))
        header.kind = QStringLiteral("Type 1");
    if (header.kind == cUnknown.kind || header.kind == QLatin1String("Type 1"))
        return header;
    const QString embedding = FindEmbedding(file, isCollection ? GetNumber32(start, 12) : 0);
    if (!embedding.isEmpty())
        header.embedding = embedding;
    return header;
}
