#include "archive/ZipArchive.h"

#include "ZipSamples.h"
#include "archive/ZipSource.h"
#include "foundation/system/GOwnedFile.h"

#include <QDateTime>
#include <QProcess>

using namespace Morvane;

static constexpr int cMadeByUnix = 3 << 8 | 20;
static constexpr int cEndSize = 22;

using ZipArchiveTest = ArchiveTest;

TEST_F(ZipArchiveTest, ADirectoryThatEndsEarlyEndsTheIterationWithAnError)
{
    QByteArray bytes = BuildArchive({{"a", "1"}, {"b", "2"}});
    const auto announce = [&](char count) {
        bytes[bytes.size() - 22 + 8] = count;  // entries on this disk, and in all
        bytes[bytes.size() - 22 + 10] = count;
        WriteFile(mArchive, bytes);
    };
    announce(100);  // has no room in the archive
    EXPECT_FALSE(Extract());
    EXPECT_EQ("ZipHelper::doExtract|Error with zipfile in unzGetGlobalInfo"_q, mLog.TakeErrors().value(0));
    announce(3);
    ZipArchive archive(mArchive);
    EXPECT_EQ(3, archive.StartIterate());
    EXPECT_TRUE(archive.Next());
    EXPECT_FALSE(archive.Next());
    EXPECT_TRUE(archive.AtEnd() && archive.hasFailed());
    EXPECT_EQ(2, archive.GetFileList().size());
}

// As other programs open them: by what the directory holds.
TEST_F(ZipArchiveTest, TheEndOfAnArchiveNeedNotBeAsItShould)
{
    const QByteArray whole = BuildArchive({{"a", "1"}, {"b", "2"}, {"c", "3"}});
    const QByteArray body = whole.left(whole.size() - cEndSize);
    const QByteArray end = whole.right(cEndSize);
    const QByteArray large = QByteArray::fromHex(
                                 "504b0606 2c00000000000000 2d00 2d00 00000000 00000000"
                                 "0300000000000000 0300000000000000") +
                             end.mid(12, 4) + QByteArray(4, '\0') + end.mid(16, 4) + QByteArray(4, '\0') +
                             QByteArray::fromHex("504b0607 00000000") + QByteArray(12, '\xff') + "PK\5\6" +
                             QByteArray(4, '\0') + QByteArray(12, '\xff') + QByteArray(2, '\0');
    const QByteArray comment = end.left(cEndSize - 2) + "\xff\xff" + QByteArray(0xffff, 'c');
    QByteArray noEnd = "PK\5\6" + QByteArray(40, '\0');
    noEnd[8] = noEnd[10] = 1;
    QByteArray understated = end;
    understated[8] = understated[10] = 1;
    const QMap<QString, QByteArray> tree = {{"a"_q, "1"}, {"b"_q, "2"}, {"c"_q, "3"}};
    QMap<QString, QByteArray> longerTree = tree;
    longerTree["d"_q] = "4";
    WriteFile(mSandbox.GetPath("d"_q), "4");
    const QMap<QString, QByteArray> archives = {
        {"too few entries"_q, body + understated},
        {"the longest comment"_q, body + comment},
        {"a comment that is cut"_q, (body + comment).chopped(1000)},
        {"bytes behind it"_q, whole + QByteArray(70000, 'b')},
        {"what looks like an end behind it"_q, whole + noEnd},
        {"bytes before it"_q, QByteArray(5000, 'b') + whole},
        {"large numbers, and bytes before it"_q, QByteArray(5000, 'b') + body + large},
        {"another archive before it"_q, BuildArchive({{"x", "9"}}) + whole}};
    for (auto archive = archives.begin(); archive != archives.end(); ++archive) {
        SCOPED_TRACE(archive.key().toStdString());
        WriteFile(mArchive, archive.value());
        EXPECT_TRUE(Extract());
        EXPECT_EQ(tree, ReadTree(mTarget));
        EXPECT_TRUE(ZipHelper::compressItem(mSandbox.GetPath("d"_q), mArchive, ZipStart::Append, QString(), 6,
                                            QString(), ZipNames::Plain));
        EXPECT_TRUE(Extract());
        EXPECT_EQ(longerTree, ReadTree(mTarget)) << "and it can be added to";
        QDir(mTarget).removeRecursively();
    }
}

TEST_F(ZipArchiveTest, WhatIsNoFileIsNotReadAndNotReplaced)
{
    if (getMadeBy() == 0)
        GTEST_SKIP() << "A system on which a test can't make pipes.";
    const QString pipe = mSandbox.GetPath("pipe"_q);
    const QString loop = mSandbox.GetPath("loop"_q);
    const QString endless = mSandbox.GetPath("endless"_q);
    ASSERT_EQ(0, QProcess::execute("mkfifo"_q, {pipe}));
    ASSERT_TRUE(QFile::link("loop"_q, loop) && QFile::link("/dev/zero"_q, endless));
    for (const QString& path : {pipe, loop, endless, mSandbox.GetPath()}) {
        ZipArchive archive(path);
        EXPECT_EQ(0, archive.StartIterate());
        EXPECT_TRUE(archive.GetLastError().startsWith("Can't open zip archive: %1: "_q.arg(path)))
            << archive.GetLastError().toStdString();
        for (const ZipStart start : {ZipStart::Create, ZipStart::Append}) {
            ZipArchiver archiver(path);
            EXPECT_FALSE(archiver.StartWriting(start, QString(), 6));
            EXPECT_TRUE(archiver.GetLastError().startsWith(QLatin1String("Error opening file: ")));
        }
    }
}

TEST_F(ZipArchiveTest, OnWindowsAnArchiveComesBackAfterAReplacementThatWasCutOff)
{
    if (getMadeBy() != 0)
        GTEST_SKIP() << "A file is replaced in one step here.";
    const QByteArray bytes = BuildArchive({{"a", "1"}});
    for (const char* first : {"read", "look"}) {
        QFile::remove(mArchive);
        WriteFile(mArchive + ".999999-2-0123abcd-aaaaaa.new.old"_q, bytes);
        if (*first == 'r')
            EXPECT_EQ(1, ZipArchive(mArchive).StartIterate());
        else
            EXPECT_EQ(ZipSource::Kind::File, ZipSource(mArchive).look());
        EXPECT_EQ(bytes, ReadFile(mArchive)) << first;
    }
}

TEST_F(ZipArchiveTest, EachFailureHasItsTextAndLeavesNoFile)
{
    RawEntry encrypted = {"e", "0123456789abcdef", 0, 1};
    RawEntry wrongCrc = {"sum", "content", 0, 0, 20, 0, {}, 0, -1, 1};
    RawEntry torn = MakeDeflated("torn", QByteArray(100000, 'x'));
    torn.content[torn.content.size() / 2] = '\xff';
    RawEntry shortened = MakeDeflated("short", "content");
    shortened.declaredSize = 8;
    const std::pair<RawEntry, QString> cases[] = {
        {encrypted, "Can't read file e from %1: it is encrypted and needs a password."_q},
        {{"m", "content", 99},
         "Can't read file m from %1: its compression or encryption is not supported."_q},
        {wrongCrc, "Can't close current file sum."_q},
        {torn, "Can't read from %1"_q},
        {shortened, "Can't read from %1"_q},
    };
    for (const auto& [entry, text] : cases) {
        Build({entry});
        ZipArchive archive(mArchive);
        EXPECT_EQ(1, archive.StartIterate());
        EXPECT_FALSE(archive.ExtractCurrentFile(mTarget, QString(), 0));
        EXPECT_EQ(QString(text).replace(QLatin1String("%1"), mArchive), archive.GetLastError());
        EXPECT_TRUE(ReadTree(mTarget).isEmpty());
        EXPECT_TRUE(archive.ExtractCurrentToMemory(QString()).isNull());
    }
    QByteArray bytes = BuildArchive({{"a", "1"}});
    bytes[0] = 'Q';
    WriteFile(mArchive, bytes);
    ZipArchive archive(mArchive);
    archive.StartIterate();
    EXPECT_FALSE(archive.ExtractCurrentFile(mTarget, QString(), 0));
    EXPECT_EQ("Can't read file a from %1. %1 is probably corrupt."_q.arg(mArchive), archive.GetLastError());
}

TEST_F(ZipArchiveTest, WhatStandsInTheWayIsNamed)
{
    Build({{"a", "1"}, {"d/b", "2"}, {"d/", ""}});
    ASSERT_TRUE(QDir().mkpath(GetTarget("a")));
    WriteFile(GetTarget("d"), "a file");
    ZipArchive archive(mArchive);
    const QString texts[] = {"Can't write in %1."_q.arg(GetTarget("a")),
                             "Can't create folder %1."_q.arg(GetTarget("d")),
                             "Can't create folder %1."_q.arg(GetTarget("d"))};
    archive.StartIterate();
    for (const QString& text : texts) {
        EXPECT_FALSE(archive.ExtractCurrentFile(mTarget, QString(), 0));
        EXPECT_TRUE(archive.GetLastError().startsWith(text + QLatin1Char(' '))) << "and why";
        archive.Next();
    }
}

TEST_F(ZipArchiveTest, AnOldFileIsReplacedByAWholeOneOnly)
{
    Build({{"a", "new", 0, 0, 20, 0, {}, 0, -1, 1}});
    WriteFile(GetTarget("a"), "old");
    ZipArchive damaged(mArchive);
    damaged.StartIterate();
    EXPECT_FALSE(damaged.ExtractCurrentFile(mTarget, QString(), 0));
    EXPECT_EQ((QMap<QString, QByteArray>{{"a"_q, "old"}}), ReadTree(mTarget));

    Build({{"a", "new"}});
    QFile::setPermissions(GetTarget("a"), QFile::ReadOwner);
    ZipArchive archive(mArchive);
    archive.StartIterate();
    EXPECT_FALSE(archive.ExtractCurrentFile(mTarget, QString(), 0));
    EXPECT_EQ("Can't write in %1. a file that is read-only has the name"_q.arg(GetTarget("a")),
              archive.GetLastError());
    QFile::setPermissions(GetTarget("a"), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_TRUE(archive.ExtractCurrentFile(mTarget, QString(), 0));
    EXPECT_TRUE(archive.ExtractCurrentFile(mTarget, QString(), 0)) << "the same entry again";
    EXPECT_EQ((QMap<QString, QByteArray>{{"a"_q, "new"}}), ReadTree(mTarget));
}

TEST_F(ZipArchiveTest, WhatKilledExtractionsLeftGoesUnlessSomebodyOwnsIt)
{
    WriteFile(mArchive, BuildArchive({{"a", "new"}}));
    WriteFile(GetTarget("a"), "old");
    WriteFile(GetTarget(".hopbox-0123456789ab.part"), "left");
    WriteFile(GetTarget(".hopbox-mine.part"), "the user's");
    const GOwnedFile held([&] { return GPathName(GetTarget(".hopbox-ba9876543210.part")); });
    EXPECT_TRUE(Extract());
    EXPECT_EQ(ReadTree(QFileInfo(GetTarget("a")).path()).keys(),
              QStringList({".hopbox-ba9876543210.part"_q, ".hopbox-mine.part"_q, "a"_q}));
}

TEST_F(ZipArchiveTest, PasswordsAreCheckedBeforeAnythingIsWritten)
{
    for (const QByteArray& content : {QByteArray("content"), QByteArray()}) {
        WriteFile(mSandbox.GetPath("secret.txt"_q), content);
        ASSERT_TRUE(ZipHelper::compressItem(mSandbox.GetPath("secret.txt"_q), mArchive, ZipStart::Create,
                                            "p\u00E4ss"_q, 6, QString(), ZipNames::NameField));
        ZipArchive archive(mArchive);
        EXPECT_EQ(content, archive.ExtractToMemory("secret\\.txt"_q, "p\u00E4ss"_q));
        // The format checks one byte: of 256 wrong passwords, one is told from the right one by the content,
        // and not at all where there is none.
        int refused = 0;
        for (const QString& wrong : {"other"_q, "Other"_q, "p\u00E4s"_q, "p\u00E4sss"_q}) {
            EXPECT_TRUE(!archive.ExtractCurrentFile(mTarget, wrong, 0) || content.isEmpty());
            if (archive.GetLastError() ==
                "Can't read file secret.txt from %1: the password is wrong."_q.arg(mArchive))
                ++refused;
        }
        EXPECT_GE(refused, 1);
        EXPECT_TRUE(content.isEmpty() || ReadTree(mTarget).isEmpty());
    }
    WriteFile(mSandbox.GetPath("secret.txt"_q), "content");
    ASSERT_TRUE(ZipHelper::compressItem(mSandbox.GetPath("secret.txt"_q), mArchive, ZipStart::Create,
                                        "first"_q, 0, QString(), ZipNames::Plain));
    QByteArray damaged = ReadFile(mArchive);
    const int content = 30 + damaged[26] + damaged[28] + 12;  // after the header, the names and the cipher's
    damaged[content] = static_cast<char>(damaged[content] ^ 1);
    WriteFile(mArchive, damaged);
    ZipArchive torn(mArchive);
    EXPECT_FALSE(torn.ExtractCurrentFile(mTarget, "first"_q, 0));
    EXPECT_TRUE(torn.GetLastError().endsWith(QLatin1String("the password may be wrong")))
        << torn.GetLastError().toStdString();
    Build({{"plain", "not encrypted"}});
    EXPECT_EQ("not encrypted", ZipArchive(mArchive).ExtractToMemory("plain"_q, "any"_q));
}

TEST_F(ZipArchiveTest, MemoryExtractionTakesTheFirstFileWhoseWholeNameMatches)
{
    Build({{"PrinterFiles/", ""},
           {"xPrinterFiles/a", "0"},
           {"PrinterFiles/a", "1"},
           {"PrinterFiles/b", "2"},
           {"empty", ""}});
    ZipArchive archive(mArchive);
    EXPECT_EQ("1", archive.ExtractToMemory("PrinterFiles/.*"_q, QString()));
    EXPECT_EQ(2, archive.GetCurrentIndex());
    EXPECT_EQ("2", archive.ExtractToMemory("x|PrinterFiles/b|y"_q, QString()));
    EXPECT_TRUE(archive.ExtractToMemory("rinterFiles"_q, QString()).isNull());
    EXPECT_TRUE(archive.ExtractToMemory("(["_q, QString()).isNull());
    const QByteArray empty = archive.ExtractToMemory("empty"_q, QString());
    EXPECT_TRUE(empty.isEmpty() && !empty.isNull());
}

TEST_F(ZipArchiveTest, FoldersAreKnownByNameOrByAttribute)
{
    Build({{"one\\", ""}, {"two/", ""}, {"three", "", 0, 0, 20, 0x10}, {"deep\\er\\file", "1"}});
    EXPECT_TRUE(Extract());
    const QStringList names = "deep/|deep/er/|deep/er/file|one/|three/|two/"_list;
    EXPECT_EQ(names, ReadTree(mTarget).keys());
}

TEST_F(ZipArchiveTest, WithoutPathsEveryFileGoesIntoTheDestination)
{
    Build({{"a/", ""}, {"a/x", "1"}, {"b/y", "2"}, {"c/x", "3"}, {"d/z", "4"}});
    EXPECT_FALSE(Extract(ZipOnError::GoOn, ZipPaths::Drop)) << "two files of one name";
    EXPECT_EQ((QMap<QString, QByteArray>{{"x"_q, "1"}, {"y"_q, "2"}, {"z"_q, "4"}}), ReadTree(mTarget));
}

TEST_F(ZipArchiveTest, OnlyListedEntriesAreExtractedAndAMissingOneIsToldFirst)
{
    Build({{"a", "1"}, {"b", "2"}, {"c", "3"}});
    EXPECT_FALSE(
        ZipHelper::extractFiles(mArchive, {"a"_q, "none"_q}, mTarget, ZipPaths::Keep, QString(), 0, mRun));
    EXPECT_EQ("ZipHelper::doExtract|Can't find none in %1."_q.arg(mArchive), mLog.TakeErrors().value(0));
    EXPECT_FALSE(QDir(mTarget).exists());
    EXPECT_TRUE(
        ZipHelper::extractFiles(mArchive, {"c"_q, "a"_q}, mTarget, ZipPaths::Keep, QString(), 0, mRun));
    EXPECT_EQ("a|c"_list, ReadTree(mTarget).keys());
}

TEST_F(ZipArchiveTest, DatesAndRightsComeFromTheEntries)
{
    const QDateTime moment(QDate(2007, 8, 9), QTime(10, 11, 12));
    RawEntry script = {"script", "#!", 0, 0, cMadeByUnix, 0104777u << 16};
    script.dosTime = makeDosTime(moment.addSecs(1));  // steps of two seconds
    Build({script,
           {"dateless", "1", 0, 0, 20, 0, {}, 0},
           {"kept", "1", 0, 0, cMadeByUnix, 0100444u << 16},
           {"dos", "1", 0, 0, 20, 0x01}});
    EXPECT_TRUE(Extract());
    EXPECT_EQ(moment, QFileInfo(GetTarget("script")).lastModified());
    const auto isForOwner = [this](const char* name) {
        return (QFile::permissions(GetTarget(name)) & QFile::WriteOwner) != 0;
    };
    EXPECT_TRUE(isForOwner("dateless"));
    EXPECT_FALSE(isForOwner("kept"));
    EXPECT_FALSE(isForOwner("dos"));
    for (const char* name : {"kept", "dos"})
        QFile::setPermissions(GetTarget(name), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_GT(60, QFileInfo(GetTarget("dateless")).lastModified().secsTo(QDateTime::currentDateTime()));
    if (getMadeBy() == 0)
        return;  // a system without such rights
    const int rights = QFile::permissions(GetTarget("script"));
    EXPECT_TRUE((rights & QFile::ExeOther) != 0);
    EXPECT_EQ(0, rights & (QFile::WriteGroup | QFile::WriteOther))
        << "an archive does not open files to others";
    QDir(mTarget).removeRecursively();
    EXPECT_TRUE(Extract(ZipOnError::Stop, ZipPaths::Keep, 0220));
    EXPECT_TRUE((QFile::permissions(GetTarget("dateless")) & QFile::WriteGroup) != 0);
    EXPECT_TRUE(isForOwner("kept")) << "the caller's word counts";
}

TEST_F(ZipArchiveTest, ARunCanBeGivenUp)
{
    Build({{"a", QByteArray(100000, 'a')}, {"b", QByteArray(100000, 'b')}});
    mRun.progress = [this](qint64 done, qint64 total) {
        EXPECT_EQ(done > 100000, QFile::exists(GetTarget("a"))) << "has its name once it is whole";
        return total == 200000 && done < 150000;
    };
    EXPECT_FALSE(Extract());
    EXPECT_EQ("a"_list, ReadTree(mTarget).keys());
}
