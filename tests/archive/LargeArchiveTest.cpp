#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "archive/ZipReader.h"

#include "ZipSamples.h"

#include <QProcess>
#include <QSysInfo>

using namespace Morvane;

namespace
{
// What 7z says of an archive. Where it does not run, nothing.
QByteArray AskSevenZip(const QStringList& arguments)
{
    if (QSysInfo::productType() == QLatin1String("windows"))
        return {};
    QProcess process;
    process.start("7z"_q, arguments);
    EXPECT_TRUE(process.waitForFinished(200000)) << process.errorString().toStdString();
    EXPECT_EQ(0, process.exitCode());
    return process.readAll();
}
}  // namespace

// Packed well, so that the disk does not have to take it all.
TEST_F(ArchiveTest, AnEntryOver4GiB)
{
    constexpr qint64 cMark = (qint64(4) << 30) + 12345;
    const QString large = mSandbox.GetPath("large"_q);
    const QString small = mSandbox.GetPath("small"_q);
    QFile sparse(large);
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.seek(cMark) && sparse.write("mark") == 4);
    sparse.close();
    WriteFile(small, "small");
    const QStringList names = "gro\u00DF \u65E5|klein \u65E5"_list;
    ZipArchiver archiver(mArchive);
    ASSERT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 0));
    ASSERT_TRUE(archiver.AddFile(large, names[0], 1, ZipNames::NameField, QString()));
    ASSERT_TRUE(archiver.AddFile(small, names[1], 0, ZipNames::NameField, QString()));
    ASSERT_TRUE(archiver.FinishWriting());
    sparse.remove();

    ZipArchive archive(mArchive);
    EXPECT_EQ(names, archive.GetFileList());
    EXPECT_EQ("small", archive.ExtractToMemory(names[1], QString()));
    // The checksum tells whether all of it comes back.
    ZipReader reader(mArchive);
    ASSERT_TRUE(reader.open() && reader.goToFirst());
    EXPECT_EQ(ZipReader::OpenResult::Done, reader.openEntry(QByteArray()));
    QByteArray chunk(1 << 20, '\0');
    qint64 size = 0;
    for (int count = 1; count > 0; size += count)
        count = reader.readEntry(chunk.data(), chunk.size());
    EXPECT_EQ(cMark + 4, size);
    EXPECT_TRUE(reader.closeEntry());
    AskSevenZip({"t"_q, mArchive});
}

TEST_F(ArchiveTest, Over65535Entries)
{
    constexpr int cCount = 65600;
    const QString source = mSandbox.GetPath("source"_q);
    WriteFile(source, "content");
    ZipArchiver archiver(mArchive);
    ASSERT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 0));
    for (int number = 0; number < cCount; ++number)
        ASSERT_TRUE(archiver.AddFile(source, QString::number(number), 0, ZipNames::Plain, QString()));
    ASSERT_TRUE(archiver.FinishWriting());

    ZipArchive archive(mArchive);
    ASSERT_EQ(cCount, archive.StartIterate());
    int number = 0;
    for (; !archive.AtEnd(); archive.Next()) {
        ASSERT_EQ(QString::number(number++), archive.GetCurrentFileName());
        ASSERT_EQ("content", archive.ExtractCurrentToMemory(QString()));
    }
    EXPECT_EQ(cCount, number);
    EXPECT_FALSE(archive.HasFailed());
    const QByteArray report = AskSevenZip({"t"_q, mArchive});
    EXPECT_TRUE(report.isEmpty() || report.contains("Files: 65600")) << report.constData();
}
