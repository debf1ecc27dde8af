#include "archive/ZipArchive.h"
#include "archive/ZipArchiver.h"
#include "archive/ZipReader.h"

#include "ZipSamples.h"

#include <QSysInfo>

using namespace Morvane;

// What 7z says of an archive. Where it does not run, nothing.
static QByteArray AskSevenZip(const QString& archive)
{
    const bool isHere = QSysInfo::productType() != QLatin1String("windows");
    return isHere ? RunShell({}, "7z t '%1'"_q.arg(archive)) : QByteArray();
}

// A large entry and one behind it. Level 0 puts 4 GiB on the disk, and the second one beyond the limit, too.
class LargeEntryTest : public ArchiveTest, public testing::WithParamInterface<int>
{
protected:
    // Every tool that is here reads the beginning of the large entry, and the small one.
    void AskOtherTools(const QString& large, const QString& small)
    {
        const QStringList readers = {"unzip -p %1 '%2'"_q, "bsdtar -xOf %1 '%2'"_q,
                                     "python3 -c \"import sys,zipfile as z,shutil\nshutil.copyfileobj("
                                     "z.ZipFile('%1').open('%2'),sys.stdout.buffer)\""_q};
        for (const QString& reader : readers) {
            const QString shown = "(%1) 2> /dev/null | head -c 1000"_q;
            EXPECT_EQ(QByteArray(1000, '\0'), RunShell({}, shown.arg(reader.arg(mArchive, large))));
            EXPECT_EQ("small", RunShell({}, shown.arg(reader.arg(mArchive, small))));
        }
    }
};

TEST_P(LargeEntryTest, IsReadBackByUsAndByOtherTools)
{
    if (GetParam() == 0 && !qEnvironmentVariableIsSet("HOPBOX_LARGE"))
        GTEST_SKIP() << "Takes 4 GiB of the disk: HOPBOX_LARGE=1 in the environment asks for it.";
    constexpr qint64 cMark = (qint64(4) << 30) + 12345;
    const QString large = mSandbox.GetPath("large"_q);
    const QString small = mSandbox.GetPath("small"_q);
    QFile sparse(large);
    ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.seek(cMark) && sparse.write("mark") == 4);
    sparse.close();
    WriteFile(small, "small");
    // Behind 4 GiB the name field is left out, too.
    const QStringList names = {"gro\u00DF \u65E5"_q, GetParam() == 0 ? "klein \u65E5"_q : "klein"_q};
    ZipArchiver archiver(mArchive);
    ASSERT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 0));
    ASSERT_TRUE(archiver.AddFile(large, names[0], GetParam(), ZipNames::NameField, QString()));
    ASSERT_TRUE(archiver.AddFile(small, names[1], 0, GetParam() == 0 ? ZipNames::NameField : ZipNames::Plain,
                                 QString()));
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
    AskSevenZip(mArchive);
    if (QSysInfo::productType() != QLatin1String("windows"))
        AskOtherTools(names[0], names[1]);
}

INSTANTIATE_TEST_SUITE_P(Levels, LargeEntryTest, testing::Values(1, 0));

TEST_F(ArchiveTest, AMillionEntriesAreTheMost)
{
    constexpr int cCount = 1000001;
    const QByteArray one = BuildArchive({{"d/", ""}});
    const QByteArray record = one.mid(one.indexOf("PK\1\2"), 48);
    QByteArray bytes = one.left(one.indexOf("PK\1\2"));
    bytes.reserve(record.size() * cCount + 1000);
    for (int number = 0; number < cCount; ++number)
        bytes += record;
    QByteArray end = one.right(22);
    for (int index = 8; index < 12; ++index)
        end[index] = 1;
    for (int index = 0; index < 4; ++index)
        end[12 + index] = static_cast<char>(record.size() * qint64(cCount) >> 8 * index);
    WriteFile(mArchive, bytes + end);
    mRun.limits.allowsOverlap = true;
    EXPECT_FALSE(Extract());
    EXPECT_TRUE(mLog.TakeErrors().value(0).contains(QLatin1String("exceeds the limit")));
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
    EXPECT_FALSE(archive.hasFailed());
    const QByteArray report = AskSevenZip(mArchive);
    EXPECT_TRUE(report.isEmpty() || report.contains("Files: 65600")) << report.constData();
}
