#include "CommandFixture.h"

#include <chrono>
#include <memory>
#include <random>
#include <thread>
#include <vector>

using KilledCreate = CommandTest;

// Wherever a kill meets it: the next one finds what is unfinished, and removes nothing that is in use.
TEST_F(KilledCreate, LeavesNothingThatTheNextDoesNotRemove)
{
    WriteFile(GetPath("a.joboptions"), "<< /A 1 >> setdistillerparams");
    std::mt19937 random(20260712);
    std::uniform_int_distribution<int> microseconds(5000, 60000);
    for (int kill = 0; kill < 60; ++kill) {
        QProcess process;
        process.setWorkingDirectory(GetPath("."));
        process.start(GetProgramPath("hopboxctl"),
                      {"create"_q, "Killed %1"_q.arg(kill), "--job-options"_q, "a.joboptions"_q});
        ASSERT_TRUE(process.waitForStarted());
        std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
        process.kill();
        process.waitForFinished();
    }
    ASSERT_EQ(Create("Last"_q), 0);
    ASSERT_EQ(Run({"list"_q}), 0);
    const QByteArray listed = mOutput;
    const QStringList folders = ListFolder(GetPath("AppData/Morvane/Hopbox/Cache/Settings"));
    for (const QString& folder : folders) {
        EXPECT_TRUE(listed.contains(folder.toUtf8())) << folder.toStdString();
        EXPECT_EQ(QDir(GetPath("AppData/Morvane/Hopbox/Cache/Settings/") + folder).entryList(QDir::Files),
                  QStringList{"Project.hopbox"_q});
        EXPECT_EQ(Run({"check"_q, folder}), 0);
    }
    EXPECT_TRUE(folders.contains("Last"_q));
    EXPECT_TRUE(QDir(GetPath("Temp")).isEmpty());
}

TEST_F(KilledCreate, OnlyWhatNobodyUsesIsTakenForUnfinished)
{
    const QString settings = GetPath("AppData/Morvane/Hopbox/Cache/Settings/");
    ASSERT_EQ(Create("Press"_q), 0);
    WriteFile(settings + "Press/Project.making"_q, "");  // killed between the entry and the end
    WriteFile(settings + "Unfinished/Project.making"_q, "");
    WriteFile(settings + "Unfinished/Project.hopbox"_q, "half");
    WriteFile(settings + "Theirs/Project.hopbox"_q, "somebody's");
    WriteFile(GetPath("Temp/hopbox-aaaaaaaa.owner"), "");
    WriteFile(GetPath("Temp/hopbox-aaaaaaaa/left"), "x");
    WriteFile(GetPath("Temp/hopbox-b/theirs"), "x");
    ASSERT_EQ(Create("Second"_q), 0);
    EXPECT_EQ(Run({"check"_q, "Press"_q}), 0);
    EXPECT_EQ(QDir(settings).entryList(QDir::Dirs | QDir::NoDotAndDotDot), "Press|Second|Theirs"_list);
    EXPECT_FALSE(QFile::exists(settings + "Press/Project.making"_q));
    EXPECT_EQ(QDir(GetPath("Temp")).entryList(QDir::AllEntries | QDir::NoDotAndDotDot), "hopbox-b"_list);

    // What can't be removed now, as somebody on Windows has it open, is found by the next.
    const QStringList left = {settings + "Unfinished/"_q, GetPath("Temp/hopbox-aaaaaaaa/")};
    WriteFile(left.at(0) + "Project.making"_q, "");
    WriteFile(GetPath("Temp/hopbox-aaaaaaaa.owner"), "");
    std::vector<std::unique_ptr<QFile>> held;
    for (const QString& folder : left) {
        WriteFile(folder + "held"_q, "x");
        held.push_back(std::make_unique<QFile>(folder + "held"_q));
        ASSERT_TRUE(held.back()->open(QIODevice::ReadOnly));
    }
    ASSERT_EQ(Create("Beside"_q), 0);
    held.clear();
    ASSERT_EQ(Create("Behind"_q), 0);
    for (const QString& folder : left)
        EXPECT_FALSE(QFile::exists(folder)) << folder.toStdString();

    // Of a damaged registry nobody knows what it named.
    WriteFile(settings + "Press/Project.making"_q, "");
    const QString registry =
        GetPath("AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs");
    WriteFile(registry, "damaged");
    ASSERT_EQ(Create("Third"_q), 0);
    EXPECT_TRUE(QFile::exists(settings + "Press/Project.hopbox"_q));
}
