#include "hopbox/HopboxRegistry.h"

#include "foundation/prefs/GPrefSharedFileModule.h"
#include "tests/support/Sandbox.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

static const GString cOddName =
    QStringLiteral("Gr\u00F6\u00DFe '1' \"\\n\" \u65E5\u672C \U0001F4E6 #ENDDICT");

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
    return HopboxRegistry().GetEntry(name, entry) ? entry.pdfSettings : QStringLiteral("(none)");
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
    QFile file(sandbox.GetPath(
        QStringLiteral("AppData/Morvane Prefs Folder/Printer Processor/MorvanePrinterProcessor.prefs")));
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
    const GString name = QStringLiteral("Press");
    AddEntry(name, QStringLiteral("1"));
    AddEntry(name, QStringLiteral("2"));
    HopboxRegistry registry;
    const QStringList keys = registry.GetKeys();
    ASSERT_EQ(keys.size(), 2);
    EXPECT_EQ(registry.FindKey(name), keys.first());
    EXPECT_EQ(GetSettings(name), registry.GetRecord(keys.first())->entry.pdfSettings);

    EXPECT_TRUE(registry.UpdateEntry(name, MakeEntry(QStringLiteral("first"))));
    EXPECT_TRUE(registry.UpdateEntry(keys.last(), MakeEntry(QStringLiteral("last"))));
    EXPECT_EQ(GetSettings(keys.first()), QStringLiteral("first"));
    EXPECT_EQ(GetSettings(keys.last()), QStringLiteral("last"));
    EXPECT_EQ(registry.GetRecord(keys.last())->actorName, name);

    EXPECT_FALSE(registry.RemoveEntry(name.toLower()));
    EXPECT_TRUE(registry.RemoveEntry(keys.first()));
    EXPECT_EQ(GetSettings(name), QStringLiteral("last"));
    EXPECT_TRUE(registry.RemoveEntry(name));
    EXPECT_FALSE(registry.RemoveEntry(name));
    EXPECT_FALSE(registry.UpdateEntry(name, MakeEntry(name)));
    EXPECT_EQ(HopboxRegistry().GetKeys(), QStringList());
}

TEST(HopboxRegistry, NothingIsWrittenWhenNothingIsFound)
{
    const Sandbox sandbox;
    AddEntry(QStringLiteral("a"), QString());
    QFile::remove(HopboxRegistry::GetPathName().GetNativePath());
    HopboxRegistry registry;
    EXPECT_FALSE(registry.RemoveEntry(QStringLiteral("a")));
    EXPECT_FALSE(registry.UpdateEntry(QStringLiteral("a"), MakeEntry(QString())));
    EXPECT_FALSE(registry.ChangeEntry(QStringLiteral("a"), [](HopboxRegistryEntry&) { FAIL(); }));
    EXPECT_FALSE(QFile::exists(HopboxRegistry::GetPathName().GetNativePath()));
}

TEST(HopboxRegistry, ChangesOfOtherHandlesCount)
{
    const Sandbox sandbox;
    HopboxRegistry early;
    const GString key = AddEntry(QStringLiteral("a"), QStringLiteral("1"));
    ASSERT_TRUE(HopboxRegistry().ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isActive = true; }));
    ASSERT_TRUE(early.ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isPlugin = false; }));
    early.SetAllowedOrigins({QStringLiteral("*")});
    const HopboxRegistry registry;
    EXPECT_TRUE(registry.GetRecord(key)->entry.isActive);
    EXPECT_FALSE(registry.GetRecord(key)->entry.isPlugin);
    EXPECT_EQ(registry.GetRecord(key)->entry.pdfSettings, QStringLiteral("1"));
}

TEST(HopboxRegistry, RecordsOfOtherProgramsAreFoundOrPassedOver)
{
    const Sandbox sandbox;
    PutText("k1", QStringLiteral("no record"));
    PutText("k2",
            QStringLiteral("#BEGINDICT\n\"PDFSettings\" \"2\"\n\"ActorName\" \"it\\'s \\\"a\"\n#ENDPREFS"));
    PutText("k3", QStringLiteral("#BEGINDICT\n\"ActorName\" \"tab\tx\"\n\"PDFSettings\" \"3\"\n#ENDDICT"));
    PutText("k4", QStringLiteral("#BEGINDICT\n\"PDFSettings\" \"4\"\n#ENDDICT"));
    EXPECT_EQ(GetSettings(QStringLiteral("it's \"a")), QStringLiteral("2"));
    EXPECT_EQ(GetSettings(QStringLiteral("tab\tx")), QStringLiteral("3"));
    EXPECT_EQ(GetSettings(QString()), QStringLiteral("4"));
    EXPECT_EQ(GetSettings(QStringLiteral("k1")), QStringLiteral("(none)"));
    EXPECT_EQ(HopboxRegistry().GetKeys().size(), 4);
    EXPECT_EQ(HopboxRegistry().GetActorNames().size(), 3);

    HopboxRegistry registry;
    EXPECT_FALSE(registry.ChangeEntry(QStringLiteral("k1"), [](HopboxRegistryEntry&) { FAIL(); }));
    EXPECT_TRUE(registry.UpdateEntry(QStringLiteral("k1"), MakeEntry(QStringLiteral("1"))));
    EXPECT_EQ(GetSettings(QStringLiteral("k1")), QStringLiteral("1"));
    PutText("k1", QStringLiteral("no record"));
    EXPECT_TRUE(registry.RemoveEntry(QStringLiteral("k1")));
}

TEST(HopboxRegistry, OriginsComeBackAndOutliveTheEntries)
{
    const Sandbox sandbox;
    EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), QStringList());
    for (const QStringList& origins :
         {QStringList{QStringLiteral("https://a.example"), QString(), cOddName}, QStringList{QString()},
          QStringList{}, QStringList{QStringLiteral("*")}}) {
        HopboxRegistry().SetAllowedOrigins(origins);
        EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), origins);
    }
    AddEntry(QStringLiteral("a"), QString());
    HopboxRegistry().Clear();
    EXPECT_EQ(HopboxRegistry().GetKeys(), QStringList());
    EXPECT_EQ(HopboxRegistry().GetAllowedOrigins(), QStringList{QStringLiteral("*")});
}

TEST(HopboxRegistry, PreferenceGroupIsTheNameUnlessThePlugInKeepsIt)
{
    const Sandbox sandbox;
    const HopboxRegistry empty;
    EXPECT_TRUE(empty.GetPreferenceGroup(QStringLiteral("none")).isEmpty());
    for (const char* name : {"", "CSPluginUI", "SmartFileList", "General", "PrefSharing"}) {
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
    EXPECT_EQ(cache, GPathName(sandbox.GetPath(QStringLiteral("AppData/Morvane/Hopbox/Cache"))));
    const GPathName settings = HopboxRegistry::GetSettingsFolder();
    const struct
    {
        GPathName path;
        int number;
        const char* name;
        const char* renamed;  // to "new", below the settings folder; null where nothing is
    } cases[] = {
        {cache.GetChild(QStringLiteral("12")), 12, "", nullptr},
        {cache.GetChild(QStringLiteral("700000/a/b.exe")), 700000, "", nullptr},
        {cache.GetChild(QStringLiteral("12a/b.exe")), 0, "", nullptr},
        {cache.GetChild(QStringLiteral("a/12/b.exe")), 0, "", nullptr},
        {cache.GetChild(QStringLiteral("99999999999/b.exe")), 0, "", nullptr},
        {cache, 0, "", nullptr},
        {cache.GetParent().GetChild(QStringLiteral("12/a.exe")), 0, "", nullptr},
        {GPathName(QStringLiteral("12/a.exe")), 0, "", nullptr},
        {GPathName(), 0, "", nullptr},
        {settings, 0, "", nullptr},
        {settings.GetChild(QStringLiteral("Press")), 0, "Press", "new"},
        // The name stands earlier in the path, too.
        {settings.GetChild(QStringLiteral("Settings/e/Settings.zip")), 0, "Settings", "new/e/Settings.zip"},
        {settings.GetChild(QStringLiteral("e/a.zip")), 0, "e", "new/a.zip"},
        {settings.GetChild(QStringLiteral("new/a.zip")), 0, "new", nullptr},
        {settings.GetChild(QStringLiteral("12/a.zip")), 0, "12", "new/a.zip"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.path.GetPortablePath().toStdString());
        EXPECT_EQ(HopboxRegistry::GetCacheEntryNumber(test.path), test.number);
        GString name = QStringLiteral("before");
        EXPECT_EQ(HopboxRegistry::GetSettingsName(test.path, name), *test.name != '\0');
        EXPECT_EQ(name, GString::fromUtf8(test.name));
        GPathName path = test.path;
        EXPECT_EQ(HopboxRegistry::RenameSettingsInPath(QStringLiteral("new"), path), test.renamed != nullptr);
        EXPECT_EQ(path, test.renamed == nullptr ? test.path : settings.GetChild(QLatin1String(test.renamed)));
    }
    GPathName path = settings.GetChild(QStringLiteral("Press/a.zip"));
    for (const char* name : {"", "..", "../x", "a/b", "/tmp"})
        EXPECT_FALSE(HopboxRegistry::RenameSettingsInPath(QLatin1String(name), path)) << name;
}
