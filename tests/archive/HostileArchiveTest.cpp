#include "archive/ZipArchive.h"

#include "ZipSamples.h"

#include <QBuffer>

#include <random>

using namespace Morvane;

static constexpr uint32_t cUnixLink = 0120777u << 16;
static constexpr int cMadeByUnix = 3 << 8 | 20;

class HostileArchiveTest : public ArchiveTest
{
protected:
    using ArchiveTest::Extract;

    bool Extract(const QVector<RawEntry>& entries, const ZipLimits& limits = {})
    {
        Build(entries);
        mRun.limits = limits;
        return Extract();
    }

    // Everything in the sandbox but the archive.
    QStringList GetAllNames() const
    {
        QStringList names = ReadTree(mSandbox.GetPath()).keys();
        names.removeOne("archive.zip"_q);
        return names;
    }
};

static const QStringList cOnlyGood = "target/|target/good.txt"_list;

TEST_F(HostileArchiveTest, UnsafeNamesAreRefusedByNameAndTheRestGoesOn)
{
    const QByteArray names(
        "../evil|a/../../evil|a/../evil|..|..\\evil|a\\..\\..\\evil|/evil|\\evil|C:/evil|C:\\evil|c:evil|"
        "//server/share/evil|\\\\server\\share\\evil|\\\\?\\C:\\evil|\\\\.\\evil|evil\0.txt|"
        "NUL|con.txt|a/Aux.tar.gz|com1|LPT9.x|COM\xC2\xB9|nul .txt|NUL:stream|CONIN$|",
        231);
    for (const QByteArray& name : names.split('|')) {
        EXPECT_FALSE(Extract({{name, "evil"}, {"good.txt", "good"}})) << name.constData();
        EXPECT_EQ(cOnlyGood, GetAllNames()) << name.constData();
        const QString shown = QString::fromUtf8(name).replace(QLatin1Char('\\'), QLatin1Char('/'));
        const QStringList errors = mLog.TakeErrors();
        ASSERT_EQ(1, errors.size()) << name.constData();
        EXPECT_TRUE(errors.first().contains(QLatin1String("Can't extract ") + shown)) << name.constData();
    }
    Build({{"../evil", "evil"}, {"last.txt", "3"}});
    EXPECT_FALSE(ArchiveTest::Extract(ZipOnError::Stop));
    EXPECT_EQ(cOnlyGood, GetAllNames()) << "the caller may stop at the first refusal";
}

TEST_F(HostileArchiveTest, HarmlessNamesAreTaken)
{
    EXPECT_TRUE(Extract({{"./a//b.txt", "1"}, {"nullable", "2"}, {"com", "3"}, {"a..b/..c", "4"}}));
    const QStringList names = "a..b/|a..b/..c|a/|a/b.txt|com|nullable"_list;
    EXPECT_EQ(names, ReadTree(mTarget).keys());
}

TEST_F(HostileArchiveTest, LinksAreNeitherMadeNorFollowed)
{
    QDir().mkpath(mSandbox.GetPath("outside"_q));
    const RawEntry link = {"link", "../outside", 0, 0, cMadeByUnix, cUnixLink};
    EXPECT_FALSE(Extract({link, {"link/evil.txt", "evil"}}));
    EXPECT_TRUE(ReadTree(mSandbox.GetPath("outside"_q)).isEmpty());
    EXPECT_TRUE(mLog.TakeErrors().value(0).contains(QLatin1String("link from"))) << "named";
    if (!QFile::link(mSandbox.GetPath("outside"_q), GetTarget("old")) ||
        !QFileInfo(GetTarget("old")).isSymLink())
        return;  // a system on which a test can't make links
    // One that was there before, to a folder and to a file.
    WriteFile(mSandbox.GetPath("victim.txt"_q), "victim");
    ASSERT_TRUE(QFile::link(mSandbox.GetPath("victim.txt"_q), GetTarget("file")));
    EXPECT_FALSE(Extract({{"old/evil.txt", "evil"}, {"file", "new"}}));
    EXPECT_TRUE(ReadTree(mSandbox.GetPath("outside"_q)).isEmpty());
    EXPECT_EQ("victim", ReadFile(mSandbox.GetPath("victim.txt"_q)));
    EXPECT_EQ("new", ReadFile(GetTarget("file"))) << "the link itself is replaced";
}

TEST_F(HostileArchiveTest, OneNameIsTakenOnce)
{
    EXPECT_FALSE(Extract({{"a", "file"},
                          {"a/b", "below a file"},
                          {"c/", ""},
                          {"c", "a folder's name"},
                          {"same.txt", "first"},
                          {"./same.txt", "second"}}));
    EXPECT_EQ((QMap<QString, QByteArray>{{"a"_q, "file"}, {"c/"_q, ""}, {"same.txt"_q, "first"}}),
              ReadTree(mTarget));
    EXPECT_TRUE(mLog.TakeErrors().last().contains(QLatin1String("./same.txt"))) << "named";
}

TEST_F(HostileArchiveTest, NamesThatTheFileSystemTakesForTheSameAreToldApart)
{
    const bool isGood = Extract({{"Name.txt", "first"}, {"nAME.txt", "second"}});
    const QMap<QString, QByteArray> tree = ReadTree(mTarget);
    EXPECT_EQ("first", tree.value("Name.txt"_q));
    EXPECT_EQ(isGood, tree.size() == 2);
    EXPECT_EQ(isGood, mLog.TakeErrors().isEmpty());
}

TEST_F(HostileArchiveTest, BeyondTheLimitsTheDiskStaysAsItWas)
{
    const RawEntry bomb = MakeDeflated("d/bomb", QByteArray(5000000, '\0'));
    RawEntry liar = bomb;
    liar.declaredSize = 100;
    ZipLimits limits;
    const QVector<RawEntry> entries = {{"good.txt", "good"}, bomb};
    limits.entryBytes = 4999999;
    EXPECT_FALSE(Extract(entries, limits));
    limits = {};
    limits.totalBytes = 5000003;
    EXPECT_FALSE(Extract(entries, limits));
    limits = {};
    limits.entryCount = 1;
    EXPECT_FALSE(Extract(entries, limits));
    EXPECT_EQ(QStringList(), GetAllNames());
    for (const QString& line : mLog.TakeErrors())
        EXPECT_TRUE(line.contains(QLatin1String("d/bomb"))) << line.toStdString();

    limits = {};
    limits.entryBytes = 1000;
    EXPECT_FALSE(Extract({liar}, limits)) << "declares less than it has";
    EXPECT_EQ("target/|target/d/"_list, GetAllNames());
}

TEST_F(HostileArchiveTest, ExtractionEntryByEntryKeepsToTheLimits)
{
    Build({{"a", "12345"}, {"deep/b", "12345"}, {"c", "1"}});
    ZipArchive archive(mArchive);
    ZipLimits limits;
    limits.totalBytes = 9;
    archive.setLimits(limits);
    archive.setMemoryLimit(4);
    for (archive.StartIterate(); !archive.AtEnd(); archive.Next())
        EXPECT_EQ(archive.ExtractCurrentFile(mTarget, QString(), 0),
                  archive.GetCurrentFileName() != "deep/b"_q);
    EXPECT_EQ("a|c"_list, ReadTree(mTarget).keys());
    EXPECT_TRUE(archive.ExtractToMemory("a"_q, QString()).isNull());
    EXPECT_TRUE(archive.GetLastError().contains(QLatin1String("limit")));
    EXPECT_EQ("1", archive.ExtractToMemory("c"_q, QString()));
}

TEST_F(HostileArchiveTest, WhatOnlyAnAttackNeedsIsRefusedWithoutOtherWords)
{
    QByteArray overlapping = BuildArchive({{"a", "data"}, {"a", "data"}});
    // The second record names the place of the first entry.
    const int record = overlapping.lastIndexOf("PK\1\2");
    for (int index = 42; index < 46; ++index)
        overlapping[record + index] = 0;
    overlapping[record + 46] = 'b';
    // A petabyte, by the record with the large numbers.
    RawEntry huge = {"huge", "data"};
    huge.declaredSize = 0xffffffff;
    huge.extraField = QByteArray::fromHex("01000800 0000000000000400");
    const std::tuple<QByteArray, const char*, const char*> cases[] = {
        {overlapping, "entries overlap", "entries overlap"},
        {BuildArchive({huge}), "no room", "exceeds the limit"}};
    for (const auto& [bytes, inHelper, inArchive] : cases) {
        WriteFile(mArchive, bytes);
        mRun.limits = {};
        EXPECT_FALSE(Extract());
        EXPECT_TRUE(mLog.TakeErrors().value(0).contains(QLatin1String(inHelper)));
        ZipArchive archive(mArchive);
        archive.StartIterate();
        EXPECT_FALSE(archive.ExtractCurrentFile(mTarget, QString(), 0));
        EXPECT_TRUE(archive.GetLastError().contains(QLatin1String(inArchive)));
        EXPECT_EQ(QStringList(), GetAllNames()) << "the disk stays as it was";
        archive.setLimits(ZipLimits::none());
        static_cast<void>(archive.ExtractCurrentFile(mTarget, QString(), 0));  // it may fail in another way
        EXPECT_FALSE(archive.GetLastError().endsWith(QLatin1String(inArchive) + QLatin1Char('.')));
        mRun.limits = ZipLimits::none();
        Extract();
        for (const QString& line : mLog.TakeErrors())
            EXPECT_FALSE(line.contains(QLatin1String(inHelper))) << line.toStdString();
        QDir(mTarget).removeRecursively();
    }
}

// Whatever is done to the bytes: no crash, nothing outside the target, and every file that is there is whole.
TEST_F(HostileArchiveTest, DamageNeverLeavesAPartialFile)
{
    const QByteArray text = QByteArray(3000, 'a') + QByteArray(3000, 'b');
    const QByteArray whole = BuildArchive({{"one.txt", text}, MakeDeflated("d/two.txt", text)});
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        QByteArray bytes = whole;
        const int position = static_cast<int>(random() % static_cast<unsigned>(whole.size()));
        if (round % 4 == 0)
            bytes.truncate(position);
        else if (round % 4 == 1)
            bytes = whole.mid(position) + whole.left(position);
        else
            bytes[round % 4 == 2 ? position : whole.size() - 1 - position % 150] =
                static_cast<char>(random());
        QDir(mTarget).removeRecursively();
        auto device = std::make_unique<QBuffer>();
        device->setData(bytes);
        ZipArchive archive(std::move(device), "damaged.zip"_q);
        for (archive.StartIterate(); !archive.AtEnd(); archive.Next())
            static_cast<void>(archive.ExtractCurrentFile(mTarget, QString(), 0));  // the files tell
        for (const QByteArray& content : ReadTree(mTarget))
            ASSERT_TRUE(content.isEmpty() || content == text) << round;
        for (const QString& name : GetAllNames())
            ASSERT_TRUE(name.startsWith(QLatin1String("target/"))) << round;
    }
}
