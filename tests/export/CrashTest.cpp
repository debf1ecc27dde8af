#include "ExportRun.h"
#include "export/JobOptionsFolder.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/ChildProcess.h"

#include <QThread>

#include <random>

CHILD_ROLE(ExportForever)
{
    const PlugInStore store;
    PlugInPreferences::Initialize();
    ExportParty party;
    party.Export(arguments.at(0));
    SayToParent("exporting");
    for (;;)
        party.Export(arguments.at(0));
}

using CrashTest = ExportFixture;

TEST_F(CrashTest, TheNextStartSweepsWhatAKilledExportLeftAndNothingElse)
{
    constexpr int cKills = 50;
    constexpr unsigned long cLongestExport = 60000;  // microseconds
    const GString key = MakeHopbox("Press"_q, "IncludeFilePackage=true"_list);
    const GPathName own = JobOptionsFolder::GetPath().GetChild("Morvane_Hopbox_PDF.joboptions"_q);
    const GPathName stranger = GetTemporary().GetChild("abcde"_q);
    GFileSystemBase::CreateFolder(own.GetParent());
    ASSERT_TRUE(WriteFile(own.GetNativePath(), "the user's own"));
    GFileSystemBase::CreateFolder(stranger);
    std::mt19937 random(20260806);
    int leftovers = 0;
    for (int kill = 0; kill < cKills; ++kill) {
        {
            ChildProcess child("ExportForever"_q, {key});
            ASSERT_EQ(child.ReadLine(), QByteArray("exporting"));
            QThread::usleep(random() % cLongestExport);
            child.Kill();
        }
        leftovers +=
            QDir(GetTemporary().GetNativePath()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size() - 2;
        store.Reopen();
        PlugInPreferences::Initialize();
        PlugInPreferences::Release();

        EXPECT_EQ(List(JobOptionsFolder::GetPath()), QStringList{own.GetLeaf()});
        const QStringList files = List(GetTemporary());
        EXPECT_TRUE(files.contains("abcde/"_q));
        int folders = 0;
        for (const QString& file : files) {
            const bool isFolder = file.endsWith(QLatin1Char('/'));
            folders += isFolder && file.count(QLatin1Char('/')) == 1;
            EXPECT_TRUE(isFolder || file.endsWith("/Instructions.txt"_q) || file.endsWith("/Content"_q) ||
                        ReadFile(GetTemporary().GetChild(file).GetNativePath()).endsWith("%%EOF\n"))
                << file.toStdString();
        }
        EXPECT_EQ(folders, 2) << files.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
    }
    EXPECT_GT(leftovers, 0);  // else no export was caught in the middle
    EXPECT_EQ(ReadFile(own.GetNativePath()), QByteArray("the user's own"));
    EXPECT_EQ(List(PlugInStore::GetFile().GetParent()).filter(".new"_q).size(), 0);
}
