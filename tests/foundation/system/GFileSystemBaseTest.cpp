#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GOwnedFile.h"
#include "tests/support/Test.h"
#include "tests/support/Threads.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QLibrary>
#include <QRegularExpression>

#include <set>

static const bool cIsWindows = QDir::separator() == QLatin1Char('\\');

static std::string Text(const GPathName& path)
{
    return path.GetPortablePath().toStdString();
}

TEST(GFileSystemBase, RootPutsEveryFolderUnderItself)
{
    const Sandbox sandbox;
    const std::tuple<int32_t, const char*, bool> cases[] = {
        {-2, "Temp", true},
        {-8, "AppData", false},
        {33, "CommonAppData/Morvane Prefs Folder", true},
        {53, "AppData/Morvane", false},
        {35, "AppData/Morvane Prefs Folder", true},
    };
    for (const auto& [number, name, isMade] : cases) {
        const GPathName path = GFileSystemBase::GetSpecialPath(number);
        EXPECT_EQ(path, GPathName(sandbox.GetPath(QString::fromLatin1(name)))) << number << Text(path);
        EXPECT_EQ(QFileInfo(path.GetNativePath()).isDir(), isMade) << number;
    }
    {
        const Sandbox other;
        EXPECT_EQ(GFileSystemBase::GetSpecialPath(-8), GPathName(other.GetPath("AppData"_q)));
        qputenv("MORVANE_ROOT", "relative/root");
        EXPECT_THROW(GFileSystemBase::GetSpecialPath(-2), GException);
    }
    EXPECT_EQ(GFileSystemBase::GetSpecialPath(-8), GPathName(sandbox.GetPath("AppData"_q)));
}

TEST(GFileSystemBase, WithoutARootTheSystemsFoldersCount)
{
    const Sandbox sandbox;
    qunsetenv("MORVANE_ROOT");
    EXPECT_EQ(GFileSystemBase::GetSpecialPath(-2), GPathName(QDir::tempPath()));
    if (cIsWindows) {
        EXPECT_EQ(GFileSystemBase::GetSpecialPath(-8), GPathName(QString::fromLocal8Bit(qgetenv("APPDATA"))));
        return;
    }
    const QByteArray before = qgetenv("XDG_CONFIG_HOME");
    qputenv("XDG_CONFIG_HOME", "/some/config");
    EXPECT_EQ(Text(GFileSystemBase::GetSpecialPath(53)), "/some/config/Morvane");
    qputenv("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(GFileSystemBase::GetSpecialPath(-8), GPathName(QDir::homePath() + "/.config"_q));
    before.isEmpty() ? qunsetenv("XDG_CONFIG_HOME") : qputenv("XDG_CONFIG_HOME", before);
    EXPECT_EQ(Text(GFileSystemBase::GetSpecialPath(33)), "/etc/xdg/Morvane Prefs Folder");
}

TEST(GFileSystemBase, ModuleFindsItsOwnFileNotTheProgram)
{
    const GPathName program(QFileInfo(QCoreApplication::applicationFilePath()).canonicalFilePath());
    EXPECT_EQ(GFileSystemBase::GetDllPath(), program);
    QLibrary library(program.GetParent().GetChild("dll_path_module"_q).GetNativePath());
    ASSERT_TRUE(library.load()) << library.errorString().toStdString();
    const auto getPath = reinterpret_cast<void (*)(QString*)>(library.resolve("GetDllPathOfModule"));
    ASSERT_NE(getPath, nullptr);
    QString path;
    getPath(&path);
    EXPECT_EQ(GPathName(path).GetLeafWithoutExtension(), "dll_path_module"_q);
    EXPECT_EQ(GPathName(path).GetParent(), program.GetParent());
}

TEST(GFileSystemBase, UniqueNamesAreReservedByTheirMaking)
{
    const Sandbox sandbox;
    const GPathName folder(sandbox.GetPath());
    std::vector<std::string> names(80);
    RunInThreads(4, [&](int thread) {
        for (int i = 0; i < 20; ++i) {
            const GPathName path = i % 2 == 0 ? GFileSystemBase::CreateUniqueFile(folder, "a.b"_q)
                                              : GFileSystemBase::CreateUniqueFolder(folder, "XXXXX"_q);
            names[static_cast<size_t>(thread * 20 + i)] = path.GetLeaf().toStdString();
        }
    });
    const std::set<std::string> distinct(names.begin(), names.end());
    EXPECT_EQ(distinct.size(), names.size());
    EXPECT_EQ(distinct.count("a.b"), 1u);
    const QRegularExpression form("^(a(_[0-9a-z]{5})?\\.b|[0-9a-z]{5})$"_q);
    for (const std::string& name : names)
        EXPECT_TRUE(form.match(QString::fromStdString(name)).hasMatch()) << name;
    constexpr QFileDevice::Permissions cOthers = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    for (const QFileInfo& entry :
         QDir(folder.GetNativePath()).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot))
        EXPECT_TRUE(cIsWindows || !(entry.permissions() & cOthers)) << entry.fileName().toStdString();

    const GPathName missing = folder.GetChild("none"_q);
    EXPECT_THROW(GFileSystemBase::CreateUniqueFile(missing, "a"_q), GCustomException);
    EXPECT_THROW(GFileSystemBase::CreateUniqueFolder(missing, "XXXXX"_q), GCustomException);
    EXPECT_THROW(GFileSystemBase::CreateUniqueFile(folder, "../a"_q), GCustomException);
}

TEST(GFileSystemBase, CopyObeysItsFlagsAndAppearsWholeOrNotAtAll)
{
    const Sandbox sandbox;
    const GPathName source(sandbox.GetPath("a"_q));
    const GPathName target(sandbox.GetPath("b"_q));
    WriteFile(source.GetNativePath(), "new");
    QFile sourceFile(source.GetNativePath());
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(1000000000000);
    ASSERT_TRUE(sourceFile.open(QIODevice::ReadWrite) &&
                sourceFile.setFileTime(time, QFileDevice::FileModificationTime));
    sourceFile.close();
    sourceFile.setPermissions(QFileDevice::ReadOwner);
    for (uint32_t flags = 0; flags < 4; ++flags) {
        SCOPED_TRACE(flags);
        WriteFile(target.GetNativePath(), "old");
        QFile::setPermissions(target.GetNativePath(), QFileDevice::ReadOwner);
        const bool isReplacing = (flags & GFileSystemBase::cReplaceExisting) != 0;
        if (isReplacing)
            GFileSystemBase::CopyAndRenameFile(source, target, flags);
        else
            EXPECT_THROW(GFileSystemBase::CopyAndRenameFile(source, target, flags), GCustomException);
        EXPECT_EQ(ReadFile(target.GetNativePath()), isReplacing ? "new" : "old");
        EXPECT_EQ(QFileInfo(target.GetNativePath()).permissions().testFlag(QFileDevice::WriteOwner),
                  isReplacing);
        EXPECT_TRUE(GFileSystemBase::TryToRemoveFile(target));
        GFileSystemBase::CopyAndRenameFile(source, target, flags);
        EXPECT_EQ(QFileInfo(target.GetNativePath()).lastModified() == time, (flags & 2) != 0);
        EXPECT_TRUE(GFileSystemBase::TryToRemoveFile(target));
    }
    const GPathName folder(sandbox.GetPath());
    EXPECT_THROW(GFileSystemBase::CopyAndRenameFile(folder, target, 3), GCustomException);
    EXPECT_EQ(ListFolder(folder.GetNativePath()), QStringList{"a"_q});
}

TEST(GFileSystemBase, NextCopyTakesAwayWhatAKilledOneLeft)
{
    const Sandbox sandbox;
    const GPathName target(sandbox.GetPath("b"_q));
    WriteFile(sandbox.GetPath("a"_q), "new");
    WriteFile(sandbox.GetPath("b.abcd1234.new"_q), "left");
    WriteFile(sandbox.GetPath("b.mine.new"_q), "the user's");
    const GOwnedFile held([&] { return GPathName(sandbox.GetPath("b.abcd5678.new"_q)); });
    GFileSystemBase::CopyAndRenameFile(GPathName(sandbox.GetPath("a"_q)), target, 0);
    EXPECT_EQ(QDir(sandbox.GetPath()).entryList(QDir::Files),
              QStringList({"a"_q, "b"_q, "b.abcd5678.new"_q, "b.mine.new"_q}));
}

TEST(GFileSystemBase, FolderGoesWithAllItHoldsButNotWithWhatLinksLeadTo)
{
    const Sandbox sandbox;
    const GPathName folder(sandbox.GetPath("work"_q));
    const GPathName outside(sandbox.GetPath("outside"_q));
    const QString kept = sandbox.GetPath("outside/keep"_q);
    const auto make = [&] {
        QDir(sandbox.GetPath()).mkpath("work/read-only/b"_q);
        QDir(sandbox.GetPath()).mkpath("outside"_q);
        WriteFile(kept, "keep");
        WriteFile(sandbox.GetPath("work/read-only/b/file"_q), "x");
        QFile::setPermissions(sandbox.GetPath("work/read-only/b/file"_q), QFileDevice::ReadOwner);
        if (!cIsWindows) {  // QFile makes shortcuts there
            QFile::setPermissions(sandbox.GetPath("work/read-only"_q), QFileDevice::ReadOwner);
            QFile::link(outside.GetNativePath(), sandbox.GetPath("work/link"_q));
            QFile::link("nowhere"_q, sandbox.GetPath("work/dangling"_q));
        }
    };
    make();
    EXPECT_FALSE(GFileSystemBase::TryToRemoveFolder(folder, 0, 1));
    EXPECT_TRUE(QFileInfo::exists(sandbox.GetPath("work/read-only"_q)));
    EXPECT_FALSE(GFileSystemBase::TryToRemoveFile(folder));
    EXPECT_TRUE(GFileSystemBase::TryToRemoveFolder(folder, -1, 10));
    EXPECT_FALSE(QFileInfo::exists(folder.GetNativePath()));
    EXPECT_EQ(ReadFile(kept), "keep");
    EXPECT_TRUE(GFileSystemBase::TryToRemoveFolder(folder)) << "What is gone counts as removed.";
    EXPECT_FALSE(GFileSystemBase::TryToRemoveFolder(GPathName(kept)));
    EXPECT_FALSE(GFileSystemBase::TryToRemoveFolder(GPathName()));
    if (!cIsWindows) {
        ASSERT_TRUE(QFile::link(outside.GetNativePath(), folder.GetNativePath()));
        EXPECT_TRUE(GFileSystemBase::TryToRemoveFolder(folder));
        EXPECT_FALSE(QFileInfo(folder.GetNativePath()).isSymLink());
    }
    EXPECT_EQ(ReadFile(kept), "keep");
    EXPECT_TRUE(GFileSystemBase::TryToRemoveFile(GPathName(kept)));
}

TEST(GFileSystemBase, TreeOfAnyDepthGoes)
{
    const Sandbox sandbox;
    const GPathName top(sandbox.GetPath(QStringLiteral("deep")));
    GPathName folder = top;
    // More levels than are walked at a time.
    for (int level = 0; level < 220; ++level)
        folder = folder.GetChild(QStringLiteral("a"));
    GFileSystemBase::CreateFolder(folder);
    ASSERT_TRUE(QFileInfo(folder.GetNativePath()).isDir());
    EXPECT_TRUE(GFileSystemBase::TryToRemoveFolder(top));
    EXPECT_FALSE(QFileInfo::exists(top.GetNativePath()));
}
