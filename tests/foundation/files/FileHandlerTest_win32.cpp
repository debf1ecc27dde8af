#include "FileHandlerFixture.h"
#include "foundation/files/FileSystem.h"

#include <windows.h>

// Qt opens files without sharing deletion, as most programs do: whoever has one open blocks a rename of it.
TEST_F(FileHandlerTest, SharingViolationIsOutlasted)
{
    QFile holder(Make("held"));
    mHandler.afterAttempt = [this, &holder](int attempt) {
        if (attempt % 3 == 0)
            holder.close();
    };
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));
    EXPECT_TRUE(mHandler.renameFile(At("held"), At("renamed")));
    EXPECT_EQ(mHandler.attempts, 3);
    holder.setFileName(At("renamed"));
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));
    EXPECT_TRUE(mHandler.removeFile(At("renamed")));
    EXPECT_EQ(mHandler.attempts, 6);

    holder.setFileName(Make("folder/held"));
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));
    EXPECT_TRUE(mHandler.removeFolder(At("folder")));
    EXPECT_EQ(Tree(), "");
}

TEST_F(FileHandlerTest, ReadOnlyFileIsRemovedAndKeepsItsMarkWhileItIsHeld)
{
    const QString path = Make("read only");
    const std::wstring native = QDir::toNativeSeparators(path).toStdWString();
    ASSERT_TRUE(::SetFileAttributesW(native.c_str(), FILE_ATTRIBUTE_READONLY));
    QFile holder(path);
    ASSERT_TRUE(holder.open(QIODevice::ReadOnly));
    EXPECT_FALSE(mHandler.removeFile(path));
    EXPECT_EQ(mHandler.attempts, 20);
    EXPECT_NE(::GetFileAttributesW(native.c_str()) & FILE_ATTRIBUTE_READONLY, 0U);
    holder.close();
    EXPECT_TRUE(mHandler.removeFile(path));
    EXPECT_EQ(Tree(), "");
}

// A server that does not answer may hold the file all the same.
TEST_F(FileHandlerTest, WhatTheSystemCannotReachIsNotTakenForMissing)
{
    const QString unreached = "//no-such-server.invalid/share/a"_q;
    Morvane::FileSystem::Error error;
    EXPECT_EQ(Morvane::FileSystem::getItemKind(unreached, &error), Morvane::FileSystem::ItemKind::Other);
    EXPECT_TRUE(error);
    EXPECT_FALSE(mHandler.removeFile(unreached));
    for (const QString& missing : {At("none"), At("none/a"), At("a|b"), Make("file") + "/a"_q, "Q:/a"_q})
        EXPECT_TRUE(mHandler.removeFile(missing)) << missing.toStdString();
}

TEST_F(FileHandlerTest, FolderIsHeldWhileItIsLocked)
{
    Make("folder/file");
    const std::wstring folder = QDir::toNativeSeparators(At("folder")).toStdWString();
    const std::wstring other = QDir::toNativeSeparators(At("other")).toStdWString();
    EXPECT_TRUE(mHandler.LockFolder(At("folder/file")));
    EXPECT_FALSE(::MoveFileW(folder.c_str(), other.c_str()));
    EXPECT_TRUE(mHandler.UnlockFolder(At("folder/file")));
    EXPECT_TRUE(::MoveFileW(folder.c_str(), other.c_str()));
}

TEST_F(FileHandlerTest, CreationDateIsCopied)
{
    MakeAll("a b");
    const QDateTime date(QDate(2003, 2, 1), QTime(1, 2, 3), Qt::UTC);
    QFile file(At("a"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(date, QFileDevice::FileBirthTime));
    file.close();
    EXPECT_TRUE(mHandler.CopyCreationDateTime(At("a"), At("b")));
    Morvane::FileSystem::DateTimes times;
    EXPECT_TRUE(mHandler.GetDateTimeInfo(At("a"), &times));
    if (times.created != date)
        GTEST_SKIP() << "This file system keeps no creation date.";
    EXPECT_TRUE(mHandler.GetDateTimeInfo(At("b"), &times));
    EXPECT_EQ(times.created, date);
}

TEST_F(FileHandlerTest, PathTooLongForTheRecycleBinIsDeleted)
{
    const QByteArray part(100, 'p');
    const QByteArray name = part + '/' + part + '/' + part + "/file";
    Make(name.constData());
    EXPECT_TRUE(mHandler.moveToRecycleBin(At(name.constData())));
    EXPECT_FALSE(QFile::exists(At(name.constData())));
    EXPECT_TRUE(mHandler.moveToRecycleBin(Make("short")));
    EXPECT_FALSE(QFile::exists(At("short")));
}

TEST_F(FileHandlerTest, LongFormsAreTakenBack)
{
    for (const auto& [path, plain] :
         {Texts{"\\\\?\\C:\\a\\..\\b", "C:/b"}, Texts{"\\\\?\\UNC\\srv\\share\\a", "//srv/share/a"},
          Texts{"C:\\a\\", "C:/a"}})
        EXPECT_EQ(mHandler.ConvertPath(QString::fromLatin1(path)).toStdString(), plain);
    Make("file");
    EXPECT_TRUE(mHandler.removeFile(mHandler.longFileName(At("file"))));
    EXPECT_EQ(Tree(), "");
}
