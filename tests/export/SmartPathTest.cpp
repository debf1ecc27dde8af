#include "ExportFixture.h"
#include "export/GCPTSmartPathName.h"
#include "export/JobOptionsFolder.h"
#include "export/SmartFileList.h"
#include "foundation/core/GException.h"
#include "tests/support/ChildProcess.h"

#include <QDateTime>

static const GBuffer cGroup = "SmartFileList";

// What another host would read now.
static GString GetListed(const GBuffer& key)
{
    const GPrefGroup list = PlugInStore::ReadList();
    const GString* value = list.Find(key);
    return value != nullptr ? *value : "(none)"_q;
}

class SmartPathTest : public ExportFixture
{
protected:
    static GPathName GetPath(const char* name) { return GetTemporary().GetChild(QString::fromUtf8(name)); }

    static GPathName MakeFile(const GPathName& path)
    {
        GFileSystemBase::CreateFolder(path.GetParent());
        EXPECT_TRUE(WriteFile(path.GetNativePath(), "x"));
        return path;
    }

    static void SetListed(const GBuffer& key, const GString& value)
    {
        GPreferences::Set(GPreferences::cUserFileModule, cGroup, key, value);
    }

    static bool Exists(const GPathName& path)
    {
        const QFileInfo file(path.GetNativePath());
        return file.exists() || file.isSymLink();
    }
};

TEST_F(SmartPathTest, ListsItsPathBeforeItMakesItAndGoesWithIt)
{
    const GPathName kept = MakeFile(GetPath("kept"));
    {
        GCPTSmartPathName folder = GCPTSmartPathName::MakeFolder(GetTemporary(), "XXXXX"_q);
        MakeFile(folder.GetPathName().GetChild("a/b"_q));
        GCPTSmartPathName file = GCPTSmartPathName::MakeFile(GetTemporary(), "kept"_q);
        EXPECT_NE(file.GetPathName(), kept);
        EXPECT_EQ(GetListed("MaxCount"), "2"_q);
        EXPECT_EQ(GetListed("FilePathName_1"), folder.GetPathName().GetNativePath());

        const GPathName old = file.GetPathName();
        file.Reassign(MakeFile(GetPath("other")));
        EXPECT_FALSE(Exists(old));
        EXPECT_EQ(GetListed("FilePathName_2"), file.GetPathName().GetNativePath());
        EXPECT_EQ(GetListed("MaxCount"), "2"_q);

        GCPTSmartPathName moved = std::move(file);
        EXPECT_EQ(GCPTSmartPathName(kept).Keep(), kept);
        EXPECT_FALSE(PlugInStore::ReadList().Has("FilePathName_3"));
    }
    EXPECT_EQ(List(GetTemporary()), "kept"_list);
    EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);  // numbers go on until a sweep
    EXPECT_EQ(GetListed("MaxCount"), "3"_q);
    EXPECT_THROW(GCPTSmartPathName::MakeFile(GetPath("no"), "a"_q), GException);
    EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
}

TEST_F(SmartPathTest, SweepTakesTheNumbersUpToTheCount)
{
    const std::tuple<const char*, QStringList, QStringList> cases[] = {
        {"5", "2|4"_list, {}},      {"3", "2|4"_list, "4"_list},  {"0", "1"_list, "1"_list},
        {"-7", "1"_list, "1"_list}, {"2147483647", "9"_list, {}}, {"99999999999999", "1"_list, "1"_list},
        {"", "1"_list, "1"_list}};
    for (const auto& [maximum, listed, left] : cases) {
        GFileSystemBase::DropFolder(GetTemporary());
        GPreferences::Remove(GPreferences::cUserFileModule, cGroup);
        for (const QString& number : listed)
            SetListed("FilePathName_" + number.toLatin1(),
                      MakeFile(GetTemporary().GetChild(number)).GetNativePath());
        SetListed("MaxCount", QString::fromLatin1(maximum));
        SmartFileList::Sweep();
        EXPECT_EQ(List(GetTemporary()), left) << maximum;
        EXPECT_EQ(GetListed("MaxCount"), "0"_q) << maximum;
    }
    GPreferences::Remove(GPreferences::cUserFileModule, cGroup);
    SmartFileList::Sweep();
    EXPECT_TRUE(PlugInStore::ReadList().IsEmpty());
}

TEST_F(SmartPathTest, SweepOfAHostileListRemovesNothingButThePlugInsOwn)
{
    const GPathName home(GetSandbox().GetPath("Home"_q));
    const GPathName settings = JobOptionsFolder::GetPath();
    const GPathName victim = MakeFile(home.GetChild("a/victim"_q));
    const GPathName temporary = GetTemporary();
    const GPathName link = GetPath("link");
    const bool hasLinks = QFile::link(home.GetNativePath(), link.GetNativePath()) &&
                          QFileInfo(link.GetNativePath()).isSymLink();
    struct Case
    {
        GString path;
        GPathName item;
        bool isRemoved;
    };
    const auto itself = [](const GPathName& item, bool isRemoved) {
        return Case{item.GetNativePath(), item, isRemoved};
    };
    const auto placed = [&](const char* name) {
        return MakeFile(settings.GetChild(QString::fromLatin1(name)));
    };
    std::vector<Case> cases = {itself(MakeFile(GetPath("sub/plain")), true),
                               itself(victim, false),
                               {home.GetNativePath(), victim, false},
                               {temporary.GetPortablePath() + "/../Home"_q, victim, false},
                               {temporary.GetPortablePath() + "/x/../../Home/a/victim"_q, victim, false},
                               {temporary.GetNativePath(), MakeFile(GetPath("stays")), false},
                               {"stays"_q, GetPath("stays"), false},
                               {"/"_q, victim, false},
                               {"%MorvaneUserPreferences%"_q, PlugInStore::GetFile().GetParent(), false},
                               {QString(QChar(0)) + victim.GetNativePath(), victim, false},
                               itself(placed("Morvane_Hopbox_PDF.joboptions"), true),
                               {QString(), placed("Morvane_Hopbox_PDF.joboptions.abcd1234.new"), true},
                               itself(placed("Morvane_Hopbox_PDF_0a1b2.joboptions"), true),
                               {QString(), placed("Morvane_Hopbox_PDF_mine1.joboptions"), false},
                               itself(placed("Press.joboptions"), false),
                               itself(placed("Morvane_Hopbox_PDF_Draft.joboptions"), false),
                               itself(settings, false)};
    if (hasLinks) {
        cases.push_back({link.GetNativePath() + "/a/victim"_q, victim, false});
        cases.push_back(itself(link, true));
    }
    int number = 0;
    for (const Case& row : cases)
        SetListed("FilePathName_" + GBuffer::number(++number), row.path);
    SetListed("MaxCount", QString::number(number));
    SetListed("FilePathName_007", victim.GetNativePath());
    SmartFileList::Sweep();
    for (const Case& row : cases)
        EXPECT_EQ(Exists(row.item), !row.isRemoved) << row.path.toStdString();
    EXPECT_TRUE(Exists(victim));
    EXPECT_FALSE(PlugInStore::ReadList().Has("FilePathName_1"));
    EXPECT_EQ(GetListed("MaxCount"), "0"_q);
}

TEST_F(SmartPathTest, NumbersGoOnFromWhatAnotherHostHasListedMeanwhile)
{
    const GCPTSmartPathName own = GCPTSmartPathName::MakeFile(GetTemporary(), "own"_q);
    PlugInPrefModule other(PlugInStore::GetFile());
    other.Set(cGroup, "FilePathName_2", "theirs"_q);
    other.Set(cGroup, "MaxCount", "2"_q);
    other.FlushPrefs();
    const GCPTSmartPathName next = GCPTSmartPathName::MakeFile(GetTemporary(), "next"_q);
    EXPECT_EQ(GetListed("FilePathName_1"), own.GetPathName().GetNativePath());
    EXPECT_EQ(GetListed("FilePathName_2"), "theirs"_q);
    EXPECT_EQ(GetListed("FilePathName_3"), next.GetPathName().GetNativePath());
}

// Keeps a file of its own for as long as the test wants.
CHILD_ROLE(OwnPath)
{
    const PlugInStore store;
    const GCPTSmartPathName path =
        GCPTSmartPathName::MakeFile(GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary), "owned"_q);
    SayToParent(path.GetPathName().GetNativePath().toUtf8());
    HearFromParent();
    return 0;
}

TEST_F(SmartPathTest, SweepLeavesWhatAnotherLivingProcessOwns)
{
    ChildProcess owner("OwnPath"_q, {});
    const GPathName owned(QString::fromUtf8(owner.ReadLine()));
    const GPathName left = MakeFile(GetPath("left"));
    const auto list = [&](int number, const GPathName& path, const GString& process) {
        SetListed("FilePathName_" + GBuffer::number(number), path.GetNativePath());
        SetListed("FileOwner_" + GBuffer::number(number), process);
        SetListed("MaxCount", QString::number(number));
    };
    // A file that lies there is no owner when nobody holds it; and a dead one may list what lives.
    const GPathName settings = PlugInStore::GetFile();
    const QString dead = settings.GetLeaf() + ".aaaaaaaaaaaa.owner"_q;
    MakeFile(settings.GetParent().GetChild(dead));
    list(5, left, dead);
    list(6, owned, dead);
    GPreferences::FlushPrefs();
    SmartFileList::Sweep();
    EXPECT_TRUE(Exists(owned));
    EXPECT_FALSE(Exists(left));
    EXPECT_EQ(GetListed("FilePathName_1"), owned.GetNativePath());
    EXPECT_EQ(GetListed("MaxCount"), "1"_q);
    EXPECT_EQ(PlugInStore::ReadList().GetCount(), 3);
    const auto listOwners = [&] {
        return QDir(settings.GetParent().GetNativePath()).entryList({"*.owner"_q});
    };
    EXPECT_EQ(listOwners(), QStringList{GetListed("FileOwner_1")});
    owner.Kill();
    SmartFileList::Sweep();
    EXPECT_FALSE(Exists(owned));
    EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
    EXPECT_EQ(listOwners(), QStringList());
}

namespace
{
// Nobody can read or write the settings while it lives: a folder stands in the place of their lock.
class BlockedSettings
{
public:
    BlockedSettings()
    {
        QFile::remove(mLock);
        EXPECT_TRUE(QDir().mkdir(mLock));
    }
    ~BlockedSettings() { QDir().rmdir(mLock); }
    BlockedSettings(const BlockedSettings&) = delete;
    BlockedSettings& operator=(const BlockedSettings&) = delete;

private:
    const QString mLock = PlugInStore::GetFile().GetNativePath() + "lock"_q;
};
}  // namespace

// Makes a file and a folder and keeps them while the settings can't be written: until it ends, or, with
// "later", until then.
CHILD_ROLE(KeepUnwritten)
{
    const PlugInStore store;
    PlugInPreferences::Initialize();
    {
        const GPathName temporary = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary);
        GCPTSmartPathName file = GCPTSmartPathName::MakeFile(temporary, "kept"_q);
        GCPTSmartPathName folder = GCPTSmartPathName::MakeFolder(temporary, "XXXXX"_q);
        GCPTSmartPathName removed = GCPTSmartPathName::MakeFile(temporary, "removed"_q);
        const BlockedSettings blocked;
        file.Keep();
        folder.Keep();
        removed.Dispose();
        if (!arguments.contains("later"_q))
            PlugInPreferences::Release();
    }
    if (arguments.contains("later"_q))
        PlugInPreferences::Release();
    return testing::Test::HasFailure() ? 1 : 0;
}

TEST_F(SmartPathTest, WhatIsKeptStaysThoughTheSettingsCouldNotBeWritten)
{
    for (const QStringList& arguments : {QStringList(), QStringList("later"_q)}) {
        GFileSystemBase::DropFolder(GetTemporary());
        EXPECT_EQ(ChildProcess("KeepUnwritten"_q, arguments).WaitForExit(), 0);
        EXPECT_EQ(List(GetTemporary()).size(), arguments.isEmpty() ? 4 : 2) << "with a mark for each";
        for (int start = 0; start < 2; ++start) {
            SmartFileList::Sweep();
            EXPECT_EQ(List(GetTemporary()).size(), 2) << start;
        }
        EXPECT_TRUE(Exists(GetPath("kept")));
        EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
    }
}

// The old path may be somebody else's by the next sweep.
TEST_F(SmartPathTest, PathThatCouldNotBeReplacedInTheListIsNotSwept)
{
    GCPTSmartPathName file = GCPTSmartPathName::MakeFile(GetTemporary(), "old"_q);
    const GPathName old = file.GetPathName();
    const int32_t number = SmartFileList::Add(GetPath("listed"));
    {
        const BlockedSettings blocked;
        EXPECT_FALSE(SmartFileList::Replace(number, GetPath("other")));
        file.Reassign(GetPath("new"));
    }
    EXPECT_EQ(GetListed("FilePathName_" + GBuffer::number(number)), GetPath("listed").GetNativePath());
    MakeFile(old);
    SmartFileList::Sweep();
    EXPECT_TRUE(Exists(old));
}

// A folder in the place of a placed file is not removed. It leaves the list, and is tried again as long as it
// is the same: what was there first, not what has come in its place.
TEST_F(SmartPathTest, WhatCannotBeRemovedIsTriedOnceMoreAtTheEndAndListedNoMore)
{
    const QString path = JobOptionsFolder::GetPath().GetChild(JobOptionsFolder::cPlacedName).GetNativePath();
    for (const bool isReassigned : {false, true}) {
        for (const bool isTheSame : {false, true}) {
            PlugInPreferences::Initialize();
            ASSERT_TRUE(QDir().mkpath(path));
            const QDateTime modified = QFileInfo(path).lastModified();
            GCPTSmartPathName item{GPathName(path)};
            isReassigned ? item.Reassign(GPathName()) : item.Dispose();
            EXPECT_TRUE(Exists(GPathName(path)));
            EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1) << "the highest number alone";
            ASSERT_TRUE(QDir().rmdir(path));
            QFile file(MakeFile(GPathName(path)).GetNativePath());
            ASSERT_TRUE(file.open(QIODevice::ReadWrite) &&
                        file.setFileTime(isTheSame ? modified : modified.addSecs(-1),
                                         QFileDevice::FileModificationTime));
            file.close();
            PlugInPreferences::Release();
            EXPECT_EQ(Exists(GPathName(path)), !isTheSame);
            QFile::remove(path);
        }
    }
}
