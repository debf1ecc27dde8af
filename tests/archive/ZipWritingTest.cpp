#include "ZipSamples.h"

#include <QDateTime>
#include <QProcess>

#include <atomic>
#include <thread>

using namespace Morvane;

static const QString cLongName = QString(120, QLatin1Char('n'));

class ZipWritingTest : public ArchiveTest
{
protected:
    ZipWritingTest()
    {
        mTree = {{"empty"_q, ""},
                 {"read-only.txt"_q, "1"},
                 {"hollow/"_q, ""},
                 {"folder/"_q, ""},
                 {"folder/.hidden"_q, QByteArray(70000, 'h')},
                 {"folder/\u65E5\u672C \u0141\u00F3d\u017A.txt"_q, "outside the code page"},
                 {"folder/\u00FCber.txt"_q, "inside"}};
        // Far beyond the 260 characters that old calls of Windows take.
        QString path;
        for (int depth = 0; depth < 4; ++depth)
            mTree[path += cLongName + QLatin1Char('/')] = QByteArray();
        mTree[path + "deep.txt"_q] = "deep";
        WriteTree(GetSource(), mTree);
        QFile::setPermissions(GetSource() + "/read-only.txt"_q, QFile::ReadOwner);
    }

    ~ZipWritingTest() override
    {
        QFile::setPermissions(GetSource() + "/read-only.txt"_q, QFile::ReadOwner | QFile::WriteOwner);
    }

    QString GetSource() const { return mSandbox.GetPath("source"_q); }
    QStringList GetTopNames() const { return ListFolder(mSandbox.GetPath()); }

    QStringList GetNames() const
    {
        QVector<ZipEntry> entries;
        EXPECT_TRUE(ZipHelper::getEntryList(mArchive, entries));
        QStringList names;
        for (const ZipEntry& entry : entries)
            names.append(entry.name);
        return names;
    }

    bool CompressItem(const QString& item, ZipStart start = ZipStart::Create) const
    {
        return ZipHelper::compressItem(item, mArchive, start, QString(), 6, QString(), ZipNames::NameField,
                                       mRun);
    }

    bool Compress(ZipStart start = ZipStart::Create) const
    {
        return CompressItem(GetSource() + "/folder"_q, start);
    }

    QMap<QString, QByteArray> mTree;
};

TEST_F(ZipWritingTest, WhatIsWrittenReadsBackEqual)
{
    for (const ZipNames names : {ZipNames::NameField, ZipNames::Plain}) {
        for (const QString& password : {QString(), "gehe\u00EFm"_q}) {
            for (const int level : {0, 9}) {
                ASSERT_TRUE(ZipHelper::compressFolderContents(GetSource(), mArchive, ZipStart::Create,
                                                              password, level, names));
                QDir(mTarget).removeRecursively();
                ASSERT_TRUE(Extract(ZipOnError::Stop, ZipPaths::Keep, 0, password));
                EXPECT_EQ(mTree.keys(), ReadTree(mTarget).keys());
                EXPECT_TRUE(mTree == ReadTree(mTarget));
            }
        }
    }
    const qint64 apart = QFileInfo(GetSource() + "/empty"_q)
                             .lastModified()
                             .secsTo(QFileInfo(mTarget + "/empty"_q).lastModified());
    EXPECT_LE(std::abs(apart), 2);
}

TEST_F(ZipWritingTest, HeadersAreAsOtherReadersOfTheNameFieldExpect)
{
    const QString name = "1\u65E5"_q;
    const QByteArray field(
        "\xD3\xD7\0\0\0\x07\xEF\xBB\xBF"
        "1\xE6\x97\xA5",
        13);
    WriteFile(mSandbox.GetPath(name), "content");
    ZipArchiver archiver(mArchive);
    ASSERT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 6));
    ASSERT_TRUE(archiver.AddFile(mSandbox.GetPath(name), name, 6, ZipNames::NameField, QString()));
    ASSERT_TRUE(archiver.FinishWriting());
    const QByteArray named = ReadFile(mArchive);
    EXPECT_EQ(0, named.indexOf(QByteArray("PK\3\4\x2d\0\0\0\x08\0", 10))) << "zip64, no flags, deflated";
    EXPECT_EQ(30, named.indexOf("1_" + field + QByteArray("\1\0\x10\0", 4)))
        << "with a zip64 record behind it";
    EXPECT_NE(-1, named.indexOf("1_" + field + "PK\5\6")) << "and in the directory";

    ASSERT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 6));
    ASSERT_TRUE(archiver.AddFile(mSandbox.GetPath(name), name, 0, ZipNames::Plain, QString()));
    ASSERT_TRUE(archiver.FinishWriting());
    const QByteArray plain = ReadFile(mArchive);
    EXPECT_EQ(0, plain.indexOf(QByteArray("PK\3\4\x14\0", 6))) << "for readers of version 2.0";
    EXPECT_EQ(6, plain.indexOf(QByteArray("\0\x08\0\0", 4))) << "UTF-8 names, stored";
    EXPECT_EQ(30, plain.indexOf("1\xE6\x97\xA5"
                                "content"));
}

TEST_F(ZipWritingTest, NamesAreRelativeToTheBaseFolder)
{
    ASSERT_TRUE(Compress());
    EXPECT_EQ("folder/"_q, GetNames().value(0));
    EXPECT_TRUE(GetNames().contains("folder/.hidden"_q));
    ASSERT_TRUE(ZipHelper::compressItem(GetSource() + "/folder/.hidden"_q, mArchive, ZipStart::Create,
                                        QString(), 6, mSandbox.GetPath(), ZipNames::Plain));
    EXPECT_EQ("source/folder/.hidden"_list, GetNames());
    EXPECT_FALSE(ZipHelper::compressItem(GetSource(), mArchive, ZipStart::Create, QString(), 6,
                                         GetSource() + "/folder"_q, ZipNames::Plain))
        << "outside the base folder";
    EXPECT_EQ("source/folder/.hidden"_list, GetNames()) << "the old one stays";
}

TEST_F(ZipWritingTest, AppendingKeepsWhatIsThere)
{
    ASSERT_TRUE(Compress(ZipStart::Append)) << "makes one that is not there";
    const int count = GetNames().size();
    ASSERT_TRUE(ZipHelper::compressItem(GetSource() + "/empty"_q, mArchive, ZipStart::Append, "secret"_q, 6,
                                        QString(), ZipNames::Plain));
    EXPECT_EQ(count + 1, GetNames().size());
    const QByteArray before = ReadFile(mArchive);
    EXPECT_FALSE(Compress(ZipStart::Append)) << "names that it has";
    EXPECT_EQ(before, ReadFile(mArchive));
    WriteFile(mArchive, "no archive");
    EXPECT_FALSE(Compress(ZipStart::Append));
    EXPECT_EQ("no archive", ReadFile(mArchive));
}

TEST_F(ZipWritingTest, AFailureLeavesWhatWasThereAndNothingElse)
{
    const QString missing = mSandbox.GetPath("missing"_q);
    const QStringList names = GetTopNames();
    {
        ZipArchiver archiver(mArchive);
        archiver.setLogInterface(&mLog);
        EXPECT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 6));
        EXPECT_FALSE(archiver.AddFile(missing, "a"_q, 6, ZipNames::Plain, QString()));
        for (const char* name : {"../a", "/a", "", ".", "a/../../b"})
            EXPECT_FALSE(
                archiver.AddFile(GetSource(), QString::fromLatin1(name), 6, ZipNames::Plain, QString()));
        EXPECT_FALSE(archiver.AddFile(GetSource() + "/empty"_q, "b"_q, 6, ZipNames::Plain, "\u65E5"_q))
            << "a password that other passwords would open";
        EXPECT_TRUE(archiver.GetLastError().contains(QLatin1String("password"))) << "with that reason";
        EXPECT_FALSE(ZipArchiver(mArchive).StartWriting(ZipStart::Create, "\u65E5"_q, 6));
        EXPECT_TRUE(archiver.AddFile(GetSource() + "/empty"_q, "c"_q, 6, ZipNames::Plain, QString()));
    }  // never finished
    EXPECT_FALSE(ZipHelper::compressItem(missing, mArchive, ZipStart::Create, QString(), 6, QString(),
                                         ZipNames::Plain, mRun));
    EXPECT_FALSE(ZipHelper::compressFolderContents(missing, mArchive, ZipStart::Create, QString(), 6,
                                                   ZipNames::Plain, mRun));
    EXPECT_EQ(names, GetTopNames());
    // What the system does not even look for may be there.
    const QString unknown = mSandbox.GetPath(QString(300, QLatin1Char('x')));
    mLog.TakeErrors();
    EXPECT_FALSE(ZipHelper::compressFolderContents(unknown, mArchive, ZipStart::Create, QString(), 6,
                                                   ZipNames::Plain, mRun));
    EXPECT_EQ(mLog.TakeErrors().join(QString()).contains("doesn't exist"_q),
              QDir::separator() != QLatin1Char('/'));
}

TEST_F(ZipWritingTest, AnArchiveInsideItsFolderLeavesItselfOut)
{
    const QString inside = GetSource() + "/self.zip"_q;
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(ZipHelper::compressFolderContents(GetSource(), inside, ZipStart::Create, QString(), 6,
                                                      ZipNames::Plain));
        QVector<ZipEntry> entries;
        EXPECT_TRUE(ZipHelper::getEntryList(inside, entries));
        EXPECT_EQ(mTree.size(), entries.size());
    }
}

TEST_F(ZipWritingTest, WhatCantBePackedIsNamedAndTheRestIsPacked)
{
    const QString folder = GetSource() + "/folder"_q;
    ASSERT_TRUE(Compress());
    const QStringList packed = GetNames();
    if (!QFile::link(GetSource(), folder + "/link"_q) || !QFileInfo(folder + "/link"_q).isSymLink())
        GTEST_SKIP() << "A system on which a test can't make links.";
    EXPECT_EQ(qint64(21 + 6), ZipHelper::getDirSize(folder));
    ASSERT_TRUE(QFile::link(GetSource() + "/gone"_q, folder + "/broken"_q));
    ASSERT_TRUE(QFile::link("loop"_q, folder + "/loop"_q));
    ASSERT_EQ(0, QProcess::execute("mkfifo"_q, {folder + "/pipe"_q}));
    EXPECT_FALSE(Compress()) << "nobody asks what is left out";
    EXPECT_EQ(packed, GetNames()) << "the old one stays";

    QStringList leftOut;
    mRun.leftOut = &leftOut;
    QFile::remove(mArchive);
    EXPECT_TRUE(Compress());
    EXPECT_EQ(packed, GetNames());
    QStringList paths;
    for (const QString& name : "broken|link|loop|pipe"_list)
        paths.append(folder + QLatin1Char('/') + name);
    EXPECT_EQ(paths, leftOut);
    const QStringList lines = mLog.TakeErrors();
    for (int index = 0; index < paths.size(); ++index)
        EXPECT_TRUE(lines.value(index + 1).endsWith(paths[index])) << "also in the log";

    EXPECT_FALSE(CompressItem(folder + "/broken"_q)) << "nothing is left to pack";
    EXPECT_EQ(packed, GetNames());
}

TEST_F(ZipWritingTest, AFileThatGrowsWhileItIsPackedIsToldAndPackedAsFarAsItWent)
{
    const QString path = mSandbox.GetPath("growing"_q);
    WriteFile(path, QByteArray(1000000, 'g'));
    std::atomic<bool> isDone{false};
    std::thread writer([&] {
        QFile file(path);
        file.open(QIODevice::Append | QIODevice::Unbuffered);
        while (!isDone)
            file.write("g");
    });
    ZipArchiver archiver(mArchive);
    archiver.setLogInterface(&mLog);
    EXPECT_TRUE(archiver.StartWriting(ZipStart::Create, QString(), 1));
    const auto add = [&](int number) {
        return archiver.AddFile(path, QString::number(number), ZipArchiver::cStartLevel, ZipNames::Plain, {});
    };
    int number = 0;
    while (number < 100 && add(number))
        ++number;
    isDone = true;
    writer.join();
    EXPECT_TRUE(archiver.GetLastError().contains(path + ": it changed while it was packed"_q));
    EXPECT_TRUE(add(100)) << "the archive goes on";
    EXPECT_TRUE(archiver.FinishWriting());
    EXPECT_TRUE(Extract());
    EXPECT_GE(QFileInfo(GetTarget(qPrintable(QString::number(number)))).size(), 1000000);
}
