#include "FileHandlerFixture.h"
#include "foundation/files/FileSystem.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SecondUser.h"

#include <QDomDocument>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

using Morvane::FileSystem::getItemKind;
using Morvane::FileSystem::ItemKind;

TEST_F(FileHandlerTest, LinksOutOfAFolderAreNeverFollowed)
{
    MakeAll("outside/kept folder/own");
    ASSERT_TRUE(QFile::link(At("outside"), At("folder/to folder")));
    ASSERT_TRUE(QFile::link(At("outside/kept"), At("folder/to file")));
    ASSERT_TRUE(QFile::link(At("nowhere"), At("folder/broken")));
    ASSERT_TRUE(QFile::link(At("folder"), At("alias")));

    qint64 count = 0;
    EXPECT_TRUE(mHandler.getFileCount(At("folder"), &count));
    EXPECT_EQ(count, 4);
    EXPECT_TRUE(mHandler.getByteCount(At("folder"), &count));
    EXPECT_EQ(count, 10);
    EXPECT_TRUE(mHandler.copyFolder(At("folder"), At("copy")));
    for (const char* link : {"copy/to folder", "copy/to file", "copy/broken"})
        EXPECT_EQ(getItemKind(At(link)), ItemKind::Link) << link;
    EXPECT_EQ(QFile::symLinkTarget(At("copy/to folder")), At("outside"));

    mHandler.isOneVolume = false;
    QDir().mkpath(At("elsewhere"));
    EXPECT_TRUE(mHandler.renameFile(At("copy/to file"), At("elsewhere/link")));
    EXPECT_EQ(getItemKind(At("elsewhere/link")), ItemKind::Link);
    EXPECT_TRUE(mHandler.removeFolder(At("elsewhere")));
    EXPECT_TRUE(mHandler.removeFolder(At("alias/")));
    EXPECT_TRUE(QFile::exists(At("folder/own")));
    EXPECT_TRUE(mHandler.setRWPermissions(At("folder")));
    EXPECT_TRUE(mHandler.cleanupFolder(At("folder")));
    EXPECT_TRUE(mHandler.removeFolder(At("copy")));
    EXPECT_EQ(Tree(), "folder/ outside/kept");
}

TEST_F(FileHandlerTest, CompanionOfALinkGoesWhereTheLinkGoes)
{
    Make("folder/._link", "companion");
    ASSERT_TRUE(QFile::link(At("nowhere"), At("folder/link")) && QDir().mkpath(At("elsewhere")));
    mHandler.isOneVolume = false;
    EXPECT_TRUE(mHandler.copyFolder(At("folder"), At("copy")));
    EXPECT_EQ(ReadFile(At("copy/._link")), "companion");
    EXPECT_TRUE(mHandler.renameFile(At("copy/link"), At("elsewhere/link")));
    EXPECT_EQ(ReadFile(At("elsewhere/._link")), "companion");
    EXPECT_TRUE(mHandler.renameFolder(At("folder"), At("elsewhere/folder")));
    EXPECT_EQ(ReadFile(At("elsewhere/folder/._link")), "companion");
}

TEST_F(FileHandlerTest, PipeInAFolderFailsTheCopyInsteadOfHangingIt)
{
    Make("folder/a");
    ASSERT_EQ(::mkfifo(QFile::encodeName(At("folder/pipe")).constData(), 0600), 0);
    EXPECT_FALSE(mHandler.copyFolder(At("folder"), At("copy")));
    EXPECT_FALSE(mHandler.copyFile(At("folder/pipe"), At("copy")));
    EXPECT_FALSE(QFile::exists(At("copy")));
    EXPECT_TRUE(mHandler.removeFolder(At("folder")));
    EXPECT_EQ(Tree(), "");
}

TEST_F(FileHandlerTest, PipeInThePlaceOfAnXmlFileIsNeitherWaitedForNorReplaced)
{
    ASSERT_EQ(::mkfifo(QFile::encodeName(At("pipe")).constData(), 0600), 0);
    QDomDocument document;
    document.appendChild(document.createElement("a"_q));
    EXPECT_FALSE(mHandler.saveXmlNodeKeepingAttributesOrder(document, At("pipe")));
    EXPECT_TRUE(mLog.TakeErrors().join(QString()).endsWith("(it is a pipe)"_q));
    EXPECT_EQ(getItemKind(At("pipe")), ItemKind::Other);
}

CHILD_ROLE(AskForAccess)
{
    Morvane::FileHandler handler;
    if (!BecomeSecondUser())
        return 3;
    // A folder that may be listed but not entered: no look at a name in it succeeds.
    const QString folder = arguments.at(0) + "/closed"_q;
    QDir().mkpath(folder);
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner);
    const bool hasAccess = handler.checkAccess(folder, QIODevice::ReadWrite);
    const bool hasItem = !handler.createTempItem("a"_q, folder, true).isEmpty();
    QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return hasAccess || hasItem ? 1 : 0;
}

TEST_F(FileHandlerTest, ANameThatCannotBeLookedAtEndsTheSearchForOne)
{
    EXPECT_EQ(mHandler.createTempItem(QString(252, QLatin1Char('n')), At(""), true), QString());
    EXPECT_TRUE(mLog.TakeErrors().join(QString()).contains("(File name too long)"_q));
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "There is no second user to try with.";
    QFile::setPermissions(mSandbox.GetPath(), QFileDevice::Permissions(0x7777));
    ChildProcess child("AskForAccess"_q, {mSandbox.GetPath()});
    EXPECT_EQ(child.WaitForExit(), 0);
}

TEST_F(FileHandlerTest, RenameWaitsForWhoeverHoldsTheFolder)
{
    Make("folder/a");
    const int folder =
        ::open(QFile::encodeName(At("folder")).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(folder, LOCK_EX | LOCK_NB), 0);
    mHandler.afterAttempt = [folder](int attempt) {
        if (attempt == 5)
            ::flock(folder, LOCK_UN);
    };
    EXPECT_TRUE(mHandler.renameFile(At("folder/a"), At("folder/b")));
    EXPECT_EQ(mHandler.attempts, 5);
    ::close(folder);
}

TEST_F(FileHandlerTest, RecycleBinIsTheDesktopsTrash)
{
    if (QT_VERSION < QT_VERSION_CHECK(5, 15, 0))
        GTEST_SKIP() << "Qt has no call for the trash before 5.15.";
    // A path of its own for the trash, on the volume of the file: else it would be the user's.
    qputenv("XDG_DATA_HOME", QFile::encodeName(At("data")));
    MakeAll("data/keep gone folder/inside");
    EXPECT_TRUE(mHandler.moveToRecycleBin(At("gone")));
    EXPECT_TRUE(mHandler.moveToRecycleBin(At("folder")));
    EXPECT_FALSE(mHandler.moveToRecycleBin(At("missing")));
    qunsetenv("XDG_DATA_HOME");
    EXPECT_FALSE(QFile::exists(At("gone")));
    EXPECT_EQ(ReadFile(At("data/Trash/files/gone")), "gone");
    EXPECT_TRUE(QFile::exists(At("data/Trash/files/folder/inside")));
    EXPECT_TRUE(ReadFile(At("data/Trash/info/gone.trashinfo")).contains("Path="));
}
