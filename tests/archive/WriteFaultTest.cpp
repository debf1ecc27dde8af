#include "archive/ZipHelper.h"

#include "ZipSamples.h"
#include "archive/ZipArchive.h"
#include "archive/ZipOutput.h"
#include "foundation/system/GDurableFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/FaultyDisk.h"

using namespace Morvane;

static constexpr int cRoom = 100000;  // bytes that a file may have in the child
static constexpr int cCannotLimit = 9;

// Extracts from one archive and makes another, on a disk that takes no more.
CHILD_ROLE(PackWithoutRoom)
{
    const QString root = arguments.first();
    if (!LimitFileSize(cRoom))
        return cCannotLimit;
    ZipArchive archive(root + "/archive.zip"_q);
    archive.StartIterate();
    SayToParent(archive.ExtractCurrentFile(root + "/target"_q, QString(), 0) ? "extracted" : "failed");
    SayToParent(archive.GetLastError().toUtf8());
    for (const int level : {0, 6}) {
        const bool isMade = ZipHelper::compressFolderContents(
            root + "/source"_q, root + "/made.zip"_q, ZipStart::Create, QString(), level, ZipNames::Plain);
        SayToParent(isMade ? "made" : "failed");
    }
    return 0;
}

// Writes where the disk takes it, where it does not, and again where it does.
CHILD_ROLE(WriteAroundAFault)
{
    GDurableFile file(GPathName(arguments.first() + "/made.zip"_q));
    ZipOutput output(file);
    if (!LimitFileSize(cRoom))
        return cCannotLimit;
    SayToParent(output.write("start", 5) && output.flush() ? "written" : "failed");
    output.patch(2 * cRoom, 1);
    SayToParent(output.flush() ? "written" : "failed");
    output.patch(0, 1);
    SayToParent(output.flush() ? "forgotten" : output.getReason().toUtf8());
    return 0;
}

TEST(WriteFaultTest, AFailedWriteIsNotForgottenWhenTheNextOneIsDone)
{
    const Sandbox sandbox;
    ChildProcess child("WriteAroundAFault"_q, {sandbox.GetPath()});
    const QByteArray first = child.ReadLine();
    if (first.isEmpty() && child.WaitForExit() == cCannotLimit)
        GTEST_SKIP() << "A system on which a test can't limit files.";
    EXPECT_EQ("written", first);
    EXPECT_EQ("failed", child.ReadLine());
    EXPECT_TRUE(child.ReadLine().endsWith("File too large"));
    EXPECT_EQ(0, child.WaitForExit());
}

TEST(WriteFaultTest, ADiskThatIsFullLeavesNoPartOfAFile)
{
    const Sandbox sandbox;
    WriteFile(sandbox.GetPath("archive.zip"_q),
              BuildArchive({MakeDeflated("large", QByteArray(2 * cRoom, 'x'))}));
    WriteFile(sandbox.GetPath("made.zip"_q), "old");
    // Stored, the first file is too much; packed, the directory at the end is.
    WriteFile(sandbox.GetPath("source/large"_q), QByteArray(2 * cRoom, 'x'));
    for (int number = 0; number < 1200; ++number)
        WriteFile(sandbox.GetPath("source/%1"_q.arg(number)), "");
    ChildProcess child("PackWithoutRoom"_q, {sandbox.GetPath()});
    const QByteArray first = child.ReadLine();
    if (first.isEmpty() && child.WaitForExit() == cCannotLimit)
        GTEST_SKIP() << "A system on which a test can't limit files.";
    EXPECT_EQ("failed", first);
    EXPECT_EQ("Can't write to " + sandbox.GetPath("target/large"_q).toUtf8() + ". File too large",
              child.ReadLine());
    EXPECT_EQ("failed", child.ReadLine());
    EXPECT_EQ("failed", child.ReadLine());
    EXPECT_EQ(0, child.WaitForExit());
    const QStringList names = "archive.zip|made.zip|source|target"_list;
    EXPECT_EQ(names, ListFolder(sandbox.GetPath()));
    EXPECT_EQ("old", ReadFile(sandbox.GetPath("made.zip"_q)));
    EXPECT_TRUE(ReadTree(sandbox.GetPath("target"_q)).isEmpty());
}
