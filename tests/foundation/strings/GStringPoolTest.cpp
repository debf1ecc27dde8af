#include "foundation/core/GException.h"
#include "foundation/strings/GLngString.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "tests/support/Test.h"

static const GString cGerman = "deDE"_q;
static const GString cFrench = "frFR"_q;
static const GString cWinAnsi = "WinAnsiEncoding"_q;

class StringPool : public testing::Test
{
protected:
    void SetUp() override { GStringPool::Initialize(); }
    void TearDown() override { GStringPool::Finalize(); }

    static void Set(const GString& language, uint32_t code, const char* text)
    {
        GStringPool::GetTable(language).SetString(code, QString::fromUtf8(text), GEncoding::GetUTF8());
    }

    void WriteStrings(const char* name, const QByteArray& content) const
    {
        ASSERT_TRUE(WriteFile(QDir(mFolder.path()).filePath(QString::fromUtf8(name)), content));
    }

    void UseFolder() const
    {
        GStringPoolSupport::ReadStringFiles(GPathName(mFolder.path()), "CSP"_q, 0, 0, 0);
    }

    static std::string Get(uint32_t code) { return GStringPool::GetString(code).toStdString(); }

    QTemporaryDir mFolder;
};

TEST_F(StringPool, TheNeutralTableWinsThenTheCurrentLanguageThenEnglish)
{
    for (const uint32_t code : {1u, 2u, 3u})
        Set(GStringPool::cEnglish, code, "english");
    Set(cGerman, 2, "deutsch");
    Set(cGerman, 3, "deutsch");
    Set(GStringPool::cNeutral, 3, "neutral");
    ASSERT_TRUE(GStringPool::SetLanguage(cGerman));

    EXPECT_EQ(Get(1), "english");
    EXPECT_EQ(Get(2), "deutsch");
    EXPECT_EQ(Get(3), "neutral");
    EXPECT_EQ(Get(4), "");

    GString text = "before"_q;
    EXPECT_FALSE(GStringPool::GetString(4, text));
    EXPECT_TRUE(text.isEmpty());
    EXPECT_FALSE(GStringPool::GetString(cGerman, 1, text)) << "one language alone has no fallback";
    EXPECT_TRUE(GStringPool::GetString(GStringPool::cEnglish, 2, text));
    EXPECT_EQ(text, QLatin1String("english"));
    {
        const GStringPool::TempLanguageForcer unknown("xxXX"_q);
        EXPECT_EQ(Get(2), "english");
        const GStringPool::TempLanguageForcer forcer(cGerman);
        EXPECT_TRUE(forcer.WasForced());
        EXPECT_EQ(Get(2), "deutsch");
    }
    EXPECT_FALSE(GStringPool::TempLanguageForcer(cGerman).WasForced());
    EXPECT_EQ(Get(2), "deutsch");
}

TEST_F(StringPool, StaticTablesCountOnFromMarkedRowsAndNeverOverwrite)
{
    const GStringPoolDataStruct first[] = {
        {30060000, "a\nb"}, {0xFFFFFFFF, "\x80 sign"}, {0xFFFFFFFF, "third"}};
    const GStringPoolDataStruct second[] = {{0xFFFFFFFF, "zero"}, {30060000, "late"}, {7, "4469E9"}};
    GStringPoolSupport::AddStringPoolData(cFrench, cWinAnsi, first, 3);
    GStringPoolSupport::AddStringPoolData(cFrench, cWinAnsi, second, 2);
    GStringPoolSupport::AddStringPoolData(cFrench, cWinAnsi, second + 2, 1, true);
    ASSERT_TRUE(GStringPool::SetLanguage(cFrench));

    EXPECT_EQ(Get(30060000), "a\r\nb");
    EXPECT_EQ(Get(30060001), "\u20AC sign");
    EXPECT_EQ(Get(30060002), "third");
    EXPECT_EQ(Get(0), "zero");
    EXPECT_EQ(Get(7), "Di\u00E9");
    QStringList languages;
    GStringPool::GetAvailableLanguages(languages);
    EXPECT_EQ(languages, QStringList({GStringPool::cEnglish, cFrench}));
    EXPECT_THROW(GStringPoolSupport::AddStringPoolData(cFrench, "NoSuch"_q, first, 1), GException);
}

TEST_F(StringPool, AFileNameDecidesWhetherItHoldsALanguage)
{
    const struct
    {
        const char* name;
        int lowest, highest, length;
        bool isOne;
    } cases[] = {{"CSP01ENUS.lng", 0, 0, 0, true},    {"CSP_enUS.LNG", 0, 0, 0, true},
                 {"CSP_x_enus_y.Lng", 0, 0, 0, true}, {"CSP_enUS.txt", 0, 0, 0, false},
                 {"XCSP_enUS.lng", 0, 0, 0, false},   {"CSP_deDE.lng", 0, 0, 0, false},
                 {"CSP05enUS.lng", 4, 6, 2, true},    {"CSP03enUS.lng", 4, 6, 2, false},
                 {"CSP07enUS.lng", 4, 6, 2, false},   {"CSPxxenUS.lng", 1, 6, 2, false},
                 {"CSPenUS.lng", 0, 99, 2, false},    {"CSP.enUS", 0, 0, 0, false}};
    for (const auto& each : cases) {
        const bool isOne =
            GStringPoolSupport::IsStringFile(GPathName(QString::fromUtf8(each.name)), "CSP"_q, each.lowest,
                                             each.highest, each.length, GStringPool::cEnglish);
        EXPECT_EQ(isOne, each.isOne) << each.name;
    }
}

TEST_F(StringPool, AStringFileMakesALanguageAndReplacesBuiltInTexts)
{
    const GStringPoolDataStruct rows[] = {{1, "built in"}, {2, "built in"}};
    GStringPoolSupport::AddStringPoolData(GStringPool::cEnglish, cWinAnsi, rows, 2);
    WriteStrings("CSP_deDE.lng", "1 \"Datei\"\n");
    WriteStrings("CSP_enUS.lng", "1 \"from the file\"\n");
    WriteStrings("CSP_xxXX.lng", "# nothing\n");
    UseFolder();

    EXPECT_TRUE(GStringPool::SetLanguage(cGerman));
    EXPECT_EQ(Get(1), "Datei");
    EXPECT_EQ(Get(2), "built in");
    EXPECT_FALSE(GStringPool::SetLanguage("xxXX"_q)) << "a file without entries is no language";
    EXPECT_EQ(Get(1), "from the file");
    GString language;
    GStringPool::GetLanguage(language);
    EXPECT_EQ(language, GStringPool::cEnglish);
}

TEST_F(StringPool, FilesAreLookedForOnceUntilOtherParametersAreGiven)
{
    UseFolder();
    EXPECT_FALSE(GStringPool::SetLanguage(cGerman));
    WriteStrings("CSP_deDE.lng", "1 \"Datei\"\n");
    EXPECT_FALSE(GStringPool::SetLanguage(cGerman));
    UseFolder();
    EXPECT_TRUE(GStringPool::SetLanguage(cGerman));
    EXPECT_TRUE(GStringPool::DeleteLanguage(cGerman));
    EXPECT_FALSE(GStringPool::SetLanguage(cGerman)) << "a deleted language is not read again";
    EXPECT_FALSE(GStringPool::DeleteLanguage(cGerman));
    EXPECT_FALSE(GStringPool::DeleteLanguage(GStringPool::cEnglish));
}

TEST_F(StringPool, ParametersStandInTheirPlacesAndAreNotReadAgain)
{
    Set(GStringPool::cEnglish, 1, "Plug-in Error: %1");
    Set(GStringPool::cEnglish, 2, "100 % of %1 (%2)");
    Set(GStringPool::cEnglish, 3, "%2 %1 %12 %0 %3 %");

    GLngString frame(1);
    frame.AddStringID(2);
    EXPECT_EQ(frame.GetReadableString().toStdString(), "Plug-in Error: 100 % of %1 (%2)");
    GLngString swapped(3);
    swapped.AddString("%2"_q);
    swapped.AddStringID(99);
    EXPECT_EQ(swapped.GetReadableString().toStdString(), " %2 %22 %0 %3 %");
    EXPECT_TRUE(GLngString(98).GetReadableString().isEmpty());
}
