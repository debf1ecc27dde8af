#include "ZipSamples.h"

#include <QProcess>
#include <QtEndian>

#include <zlib.h>

// Numbers in the order of the zip format, lowest byte first.
static QByteArray Number(qint64 value, int size)
{
    QByteArray bytes(8, '\0');
    qToLittleEndian<qint64>(value, bytes.data());
    return bytes.left(size);
}

static qint64 GetCrc(const QByteArray& bytes)
{
    return static_cast<qint64>(
        crc32(0, reinterpret_cast<const Bytef*>(bytes.constData()), static_cast<uInt>(bytes.size())));
}

// What the header before the content and the record of the directory have in common.
static QByteArray Describe(const RawEntry& entry)
{
    const qint64 crc = entry.crc >= 0 ? entry.crc : GetCrc(entry.content);
    const qint64 size = entry.declaredSize >= 0 ? entry.declaredSize : entry.content.size();
    return Number(20, 2) + Number(entry.flags, 2) + Number(entry.method, 2) + Number(entry.dosTime, 4) +
           Number(crc, 4) + Number(entry.content.size(), 4) + Number(size, 4) + Number(entry.name.size(), 2) +
           Number(entry.extraField.size(), 2);
}

QByteArray BuildArchive(const QVector<RawEntry>& entries)
{
    QByteArray archive;
    QByteArray directory;
    for (const RawEntry& entry : entries) {
        directory += "PK\1\2" + Number(entry.madeBy, 2) + Describe(entry) + Number(0, 6) +
                     Number(entry.attributes, 4) + Number(archive.size(), 4) + entry.name + entry.extraField;
        archive += "PK\3\4" + Describe(entry) + entry.name + entry.extraField + entry.content;
    }
    return archive + directory + "PK\5\6" + Number(0, 4) + Number(entries.size(), 2) +
           Number(entries.size(), 2) + Number(directory.size(), 4) + Number(archive.size(), 4) + Number(0, 2);
}

RawEntry MakeDeflated(const QByteArray& name, const QByteArray& content)
{
    // The library's stream stands behind four bytes of its length and a header of two, before a checksum.
    const QByteArray packed = qCompress(content);
    RawEntry entry;
    entry.name = name;
    entry.content = packed.mid(6, packed.size() - 10);
    entry.method = 8;
    entry.declaredSize = content.size();
    entry.crc = GetCrc(content);
    return entry;
}

void WriteTree(const QString& folder, const QMap<QString, QByteArray>& tree)
{
    for (auto item = tree.begin(); item != tree.end(); ++item) {
        const QString path = folder + QLatin1Char('/') + item.key();
        if (item.key().endsWith(QLatin1Char('/')))
            ASSERT_TRUE(QDir().mkpath(path));
        else
            ASSERT_TRUE(WriteFile(path, item.value()));
    }
}

QByteArray RunShell(const QString& folder, const QString& line)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL"_q, "C.UTF-8"_q);
    process.setProcessEnvironment(environment);
    process.start("/bin/sh"_q, {"-c"_q, line});
    process.waitForFinished(200000);
    const QByteArray output = process.readAll();
    EXPECT_EQ(0, process.exitCode()) << line.toStdString() << '\n' << output.constData();
    return output;
}
