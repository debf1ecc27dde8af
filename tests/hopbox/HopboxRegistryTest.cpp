#include "hopbox/HopboxRegistry.h"

#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/Test.h"

static const GString cOddName = "Gr\u00F6\u00DFe '1' \"\\n\" \u65E5\u672C \U0001F4E6 #ENDDICT"_q;

static GPathName GetPath(const char* relative)
{
    return GPathName(QDir(QDir::tempPath()).absoluteFilePath(QString::fromUtf8(relative)));
}

static HopboxRegistryEntry MakeEntry(const GString& pdfSettings)
{
    HopboxRegistryEntry entry;
    entry.applicationPath = GetPath("a.exe");
    entry.contextFilePath = GetPath("\u65E5/a.zip");
    entry.pdfSettings = pdfSettings;
    entry.isPlugin = true;
    return entry;
}

static GString AddEntry(const GString& actorName, const GString& pdfSettings)
{
    GString key;
    EXPECT_TRUE(HopboxRegistry().AddEntry(actorName, MakeEntry(pdfSettings), &key));
    return key;
}

// Puts a record into the registry as another program may have written it.
static void PutText(const char* key, const GString& text)
{
    const HopboxRegistry folderMaker;
    GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
    module.Set("PrinterProcessorRegistry", key, text);
    module.FlushPrefs();
}

static GString GetSettings(const GString& name)
{
    HopboxRegistryEntry entry;
    return HopboxRegistry().GetEntry(name, entry) ? entry.pdfSettings : "(none)"_q;
}

TEST(HopboxRegistry, EntriesComeBackFromTheFileWithAnyText)
{
    const Sandbox sandbox;
    HopboxRegistryEntry entry;
    GDateTime time;
    HopboxRegistry().GetModificationTime(time);
    EXPECT_FALSE(time.IsValid());
    EXPECT_FALSE(HopboxRegistry().GetEntry(cOddName, entry));

    const GString key = AddEntry(cOddName, cOddName);
    QFile file(
        sandbox.GetPath("AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs"_q));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.read(4), QByteArray("\xFF\xFE#\0", 4));

    const HopboxRegistry registry;
    EXPECT_TRUE(registry.GetEntry(cOddName, entry));
    EXPECT_EQ(entry, MakeEntry(cOddName));
    EXPECT_EQ(registry.GetKeys(), QStringList(key));
    EXPECT_EQ(registry.GetActorNames(), QStringList(cOddName));
    registry.GetModificationTime(time);
    EXPECT_TRUE(time.IsValid());
    GString actorName;
    EXPECT_TRUE(registry.FindByContextFile(entry.contextFilePath, actorName, entry));
    EXPECT_EQ(actorName, cOddName);
    EXPECT_FALSE(registry.FindByContextFile(entry.applicationPath, actorName, entry));
}

TEST(HopboxRegistry, OneOfTwoEntriesWithOneNameIsAddressedByItsKey)
{
    const Sandbox sandbox;
    const GString name = "Press"_q;
    AddEntry(name, "1"_q);
    AddEntry(name, "2"_q);
    HopboxRegistry registry;
    const QStringList keys = registry.GetKeys();
    ASSERT_EQ(keys.size(), 2);
    EXPECT_EQ(registry.FindKey(name), keys.first());
    EXPECT_EQ(GetSettings(name), registry.GetRecord(keys.first())->entry.pdfSettings);

    EXPECT_TRUE(registry.UpdateEntry(name, MakeEntry("first"_q)));
    EXPECT_TRUE(registry.UpdateEntry(keys.last(), MakeEntry("last"_q)));
    EXPECT_EQ(GetSettings(keys.first()), "first"_q);
    EXPECT_EQ(GetSettings(keys.last()), "last"_q);
    EXPECT_EQ(registry.GetRecord(keys.last())->actorName, name);

    EXPECT_FALSE(registry.RemoveEntry(name.toLower()));
    EXPECT_TRUE(registry.RemoveEntry(keys.first()));
    EXPECT_EQ(GetSettings(name), "last"_q);
    EXPECT_TRUE(registry.RemoveEntry(name));
    EXPECT_EQ(HopboxRegistry().GetKeys(), QStringList());
    // What finds nothing writes nothing.
    QFile::remove(HopboxRegistry::GetPathName().GetNativePath());
    EXPECT_FALSE(registry.RemoveEntry(name));
    EXPECT_FALSE(registry.UpdateEntry(name, MakeEntry(name)));
    EXPECT_FALSE(registry.ChangeEntry(name, [](HopboxRegistryEntry&) { FAIL(); }));
    EXPECT_FALSE(QFile::exists(HopboxRegistry::GetPathName().GetNativePath()));
}

TEST(HopboxRegistry, ChangesOfOtherHandlesCount)
{
    const Sandbox sandbox;
    HopboxRegistry early;
    const GString key = AddEntry("a"_q, "1"_q);
    ASSERT_TRUE(HopboxRegistry().ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isActive = true; }));
    ASSERT_TRUE(early.ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isPlugin = false; }));
    early.SetAllowedOrigins({"*"_q});
    const HopboxRegistry registry;
    EXPECT_TRUE(registry.GetRecord(key)->entry.isActive);
    EXPECT_FALSE(registry.GetRecord(key)->entry.isPlugin);
    EXPECT_EQ(registry.GetRecord(key)->entry.pdfSettings, "1"_q);
}

TEST(HopboxRegistry, RecordsOfOtherProgramsAreFoundOrPassedOver)
{
    const Sandbox sandbox;
    PutText("k1", "no record"_q);
    PutText("k2", "#BEGINDICT\n\"PDFSettings\" \"2\"\n\"ActorName\" \"it\\'s \\\"a\"\n#ENDPREFS"_q);
    PutText("k4", "#BEGINDICT\n\"PDFSettings\" \"4\"\n#ENDDICT"_q);
    EXPECT_EQ(GetSettings("it's \"a"_q), "2"_q);
    EXPECT_EQ(GetSettings(QString()), "4"_q);
    EXPECT_EQ(GetSettings("k1"_q), "(none)"_q);
    EXPECT_EQ(HopboxRegistry().GetKeys().size(), 3);
    EXPECT_EQ(HopboxRegistry().GetActorNames().size(), 2);

    HopboxRegistry registry;
    EXPECT_FALSE(registry.ChangeEntry("k1"_q, [](HopboxRegistryEntry&) { FAIL(); }));
    EXPECT_TRUE(registry.UpdateEntry("k1"_q, MakeEntry("1"_q)));
    EXPECT_EQ(GetSettings("k1"_q), "1"_q);
    PutText("k1", "no record"_q);
    EXPECT_TRUE(registry.RemoveEntry("k1"_q));

    // The entry of the empty key is none of an unknown name.
    PutText("", "#BEGINDICT\n\"PDFSettings\" \"5\"\n\"ActorName\" \"e\"\n#ENDDICT"_q);
    EXPECT_EQ(GetSettings("e"_q), "5"_q);
    EXPECT_EQ(GetSettings("unknown"_q), "(none)"_q);
    EXPECT_EQ(registry.RenameEntry("unknown"_q, "new"_q), HopboxRegistry::Renaming::cNotFound);
}

TEST(HopboxRegistry, OriginsComeBackAndOutliveTheEntries)
{
    const Sandbox sandbox;
    EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), QStringList());
    for (const QStringList& origins : {QStringList{"https://a.example"_q, QString(), cOddName},
                                       QStringList{QString()}, QStringList{}, QStringList{"*"_q}}) {
        HopboxRegistry().SetAllowedOrigins(origins);
        EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), origins);
    }
    AddEntry("a"_q, QString());
    HopboxRegistry().Clear();
    EXPECT_EQ(HopboxRegistry().GetKeys(), QStringList());
    EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), QStringList{"*"_q});
}

TEST(HopboxRegistry, PreferenceGroupIsTheNameUnlessThePlugInKeepsIt)
{
    const Sandbox sandbox;
    const HopboxRegistry empty;
    EXPECT_TRUE(empty.GetPreferenceGroup("none"_q).isEmpty());
    for (const char* name : {"", "CSPluginUI", "SmartFileList", "General", "PrefSharing", "Results"}) {
        const GString key = AddEntry(QLatin1String(name), QString());
        EXPECT_EQ(HopboxRegistry().GetPreferenceGroup(key), key) << name;
    }
    const GString key = AddEntry(cOddName, QString());
    EXPECT_EQ(HopboxRegistry().GetPreferenceGroup(key), cOddName);
}

// All about one sandbox: the settings folder is computed once per process.
TEST(HopboxRegistry, CacheEntryNumberAndSettingsNameOfAPath)
{
    const Sandbox sandbox;
    const GPathName cache = HopboxRegistry::GetCacheFolder();
    EXPECT_EQ(cache, GPathName(sandbox.GetPath("AppData/Morvane/Hopbox/Cache"_q)));
    const GPathName settings = HopboxRegistry::GetSettingsFolder();
    // renamed: to "new", below the settings folder; null where nothing is
    const std::tuple<GPathName, int, const char*, const char*> cases[] = {
        {cache.GetChild("12"_q), 12, "", nullptr},
        {cache.GetChild("700000/a/b.exe"_q), 700000, "", nullptr},
        {cache.GetChild("12a/b.exe"_q), 0, "", nullptr},
        {cache.GetChild("99999999999/b.exe"_q), 0, "", nullptr},
        {cache.GetParent().GetChild("12/a.exe"_q), 0, "", nullptr},
        {GPathName(), 0, "", nullptr},
        {settings, 0, "", nullptr},
        {settings.GetChild("Press"_q), 0, "Press", "new"},
        // The name stands earlier in the path, too.
        {settings.GetChild("Settings/e/Settings.zip"_q), 0, "Settings", "new/e/Settings.zip"},
        {settings.GetChild("e/a.zip"_q), 0, "e", "new/a.zip"},
        {settings.GetChild("new/a.zip"_q), 0, "new", nullptr},
    };
    for (const auto& [place, number, settingsName, renamed] : cases) {
        SCOPED_TRACE(place.GetPortablePath().toStdString());
        EXPECT_EQ(HopboxRegistry::GetCacheEntryNumber(place), number);
        GString name = "before"_q;
        EXPECT_EQ(HopboxRegistry::GetSettingsName(place, name), *settingsName != '\0');
        EXPECT_EQ(name, GString::fromUtf8(settingsName));
        GPathName path = place;
        EXPECT_EQ(HopboxRegistry::RenameSettingsInPath("new"_q, path), renamed != nullptr);
        EXPECT_EQ(path, renamed == nullptr ? place : settings.GetChild(QLatin1String(renamed)));
    }
    GPathName path = settings.GetChild("Press/a.zip"_q);
    for (const char* name : {"", "..", "../x", "a/b", "/tmp"})
        EXPECT_FALSE(HopboxRegistry::RenameSettingsInPath(QLatin1String(name), path)) << name;
}
