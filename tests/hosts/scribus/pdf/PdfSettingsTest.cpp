#include "hosts/scribus/pdf/JobOptionRows.h"
#include "hosts/scribus/pdf/SettingsReport.h"
#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"
#include "tests/support/Test.h"

#include <QJsonObject>
#include <QSet>

static void ExpectRefusal(const QByteArray& bad)
{
    JobOptions options;
    PdfSettings settings;
    ASSERT_EQ(options.Parse("<<" + bad + ">> setdistillerparams").GetReason(), QString()) << bad.constData();
    EXPECT_FALSE(PdfSettings::Make(options, settings).HasSucceeded()) << bad.constData();
    EXPECT_FALSE(JobOptionsRules::FindFault(options).isEmpty()) << "no tool takes it: " << bad.constData();
}

TEST(PdfSettingsTest, SettingsBecomeOptionsOfTheExport)
{
    const std::tuple<QByteArray, const char*, double> cases[] = {
        {"", "version", 14},
        {"/CompatibilityLevel 1.3", "version", 13},
        {"/CompatibilityLevel 1.7", "version", 15},
        {"/CompatibilityLevel 1.7 /CheckCompliance [/PDFX1a:2001]", "version", 11},
        {"/PDFX3Check true", "version", 12},
        {"/CheckCompliance [/None /PDFX4:2010]", "version", 10},
        {"/PDFX1aCheck true /ColorConversionStrategy /sRGB", "outdst", 1},
        {"/ColorConversionStrategy /sRGB", "outdst", 0},
        {"/ColorConversionStrategy /LeaveColorUnchanged", "profilei", 1},
        {"/OtherNamespaces [<</ConvertColors /ConvertToCMYK>>]", "profilei", 0},
        {"/EmbedAllFonts false", "fontEmbedding", 2},
        {"/OtherNamespaces [<</AddCropMarks false>> <</AddCropMarks true /MarksOffset 5.5>>]", "cropMarks",
         1},
        {"/OtherNamespaces [<</BleedOffset [1 2 3 4] /UseDocumentBleed false>>]", "bleedr", 4},
        {"/Binding null", "binding", 0},
    };
    for (const auto& [text, option, value] : cases) {
        JobOptions options;
        PdfSettings settings;
        ASSERT_EQ(options.Parse("<<" + text + ">> setdistillerparams").GetReason(), QString());
        ASSERT_EQ(PdfSettings::Make(options, settings).GetReason(), QString());
        EXPECT_EQ(settings.MakeOptions().value(QLatin1String(option)).toDouble(-1), value)
            << text.constData();
    }
    for (const QByteArray bad :
         {"/CompatibilityLevel 0.9", "/GrayImageResolution 1e300", "/OtherNamespaces [<</MarksOffset -1>>]",
          "/OtherNamespaces [<</BleedOffset [1]>>]", "/ColorImageDict << /QFactor 101 >>"})
        ExpectRefusal(bad);
}

TEST(PdfSettingsTest, EveryClassOfImagesHasItsOwnRule)
{
    using Get = double (*)(const PdfImageRules&);
    const std::tuple<QByteArray, Get, double> cases[] = {
        {"", [](const auto& rules) { return rules.color.resolution; }, 0},
        {"/ColorImageResolution 150 /GrayImageResolution 99",
         [](const auto& rules) { return rules.color.resolution; }, 150},
        {"/ColorImageResolution 150 /GrayImageResolution 99",
         [](const auto& rules) { return rules.gray.resolution; }, 99},
        {"/MonoImageResolution 1200", [](const auto& rules) { return rules.mono.resolution; }, 1200},
        {"/ColorImageResolution 150 /DownsampleColorImages false",
         [](const auto& rules) { return rules.color.resolution; }, 0},
        {"/GrayImageResolution 150 /GrayImageDownsampleType /None",
         [](const auto& rules) { return rules.gray.resolution; }, 0},
        {"/MonoImageDownsampleThreshold 1.5", [](const auto& rules) { return rules.mono.threshold; }, 1.5},
        {"/ColorImageFilter /DCTEncode", [](const auto& rules) { return double(rules.color.coding); },
         double(PdfImageRule::Coding::Jpeg)},
        {"/ColorImageFilter /FlateEncode /AutoFilterColorImages true",
         [](const auto& rules) { return double(rules.color.coding); },
         double(PdfImageRule::Coding::Automatic)},
        {"/EncodeGrayImages false /GrayImageFilter /DCTEncode",
         [](const auto& rules) { return double(rules.gray.coding); }, double(PdfImageRule::Coding::None)},
        {"/GrayImageFilter /DCTEncode /GrayImageDict << /QFactor 0.9 >> /GrayACSImageDict << /QFactor 0.1 >>",
         [](const auto& rules) { return rules.gray.qFactor; }, 0.9},
        {"/ColorImageDict << /QFactor 0.9 >> /ColorACSImageDict << /QFactor 0.1 >>",
         [](const auto& rules) { return rules.color.qFactor; }, 0.1},
    };
    for (const auto& [text, get, value] : cases) {
        JobOptions options;
        PdfSettings settings;
        ASSERT_EQ(options.Parse("<<" + text + ">> setdistillerparams").GetReason(), QString());
        ASSERT_EQ(PdfSettings::Make(options, settings).GetReason(), QString());
        EXPECT_EQ(get(settings.wishes.images), value) << text.constData();
    }
}

// A setting that the export takes is one that tools refuse for the same values; and it stands in one row.
TEST(PdfSettingsTest, EveryRowRefusesAValueOfAnotherType)
{
    QSet<QString> keys;
    for (const JobOptionRow& row : JobOptionRow::GetAll()) {
        const QString place = QString::number(int(row.section)) + QLatin1String(row.key);
        EXPECT_FALSE(keys.contains(place)) << row.key;
        keys.insert(place);
        EXPECT_STRNE(row.note, "") << row.key;
        if (!row.take)
            continue;
        const QByteArray pair =
            QByteArray("/") + row.key +
            (row.type == PostScriptValue::Type::Name ? QByteArray(" 7") : QByteArray(" /x"));
        if (row.section == JobOptionRow::Section::Namespaces)
            ExpectRefusal("/OtherNamespaces [<<" + pair + ">>]");
        else if (row.section == JobOptionRow::Section::Device)
            ExpectRefusal(">> setdistillerparams <<" + pair + ">> setpagedevice <<");
        else
            ExpectRefusal(pair);
    }
}

TEST(PdfSettingsTest, WhatIsNotHonouredAsItStandsIsTold)
{
    const struct
    {
        QByteArray settings;
        const char* told;  // keys and answers
    } cases[] = {
        {"/CompatibilityLevel 1.4 /ColorImageResolution 300 /DSCReportingLevel 0", ""},
        {"/ColorImageDownsampleType /Average /ASCII85EncodePages false /NeverEmbed [ true ]", ""},
        {"/ColorImageDownsampleType /Bicubic", "ColorImageDownsampleType: approximated"},
        {"/ASCII85EncodePages true /Mystery 1", "ASCII85EncodePages: not possible, Mystery: unknown"},
        {"/OtherNamespaces [<</Namespace [(a)] /IncludeSlug true>>]", "IncludeSlug: not possible"},
        {">> setdistillerparams << /PageSize [1 1] /Tray 2 >> setpagedevice <<", "Tray: unknown"},
    };
    for (const auto& item : cases) {
        JobOptions options;
        ASSERT_EQ(options.Parse("<<" + item.settings + ">> setdistillerparams").GetReason(), QString());
        QStringList told;
        for (const QJsonValue& answer : SettingsReport::Make(options))
            told += answer["key"_q].toString() + ": "_q + answer["answer"_q].toString();
        EXPECT_EQ(told.join(", "_q).toStdString(), item.told) << item.settings.constData();
    }
}

// tools/job-options writes the page anew.
TEST(PdfSettingsTest, ThePageOfJobOptionsHoldsEveryRowAsItIs)
{
    const QByteArray page = ReadFile(QStringLiteral(JOB_OPTIONS_PAGE));
    EXPECT_TRUE(page.contains(SettingsReport::MakePage()))
        << "docs/job-options.md is old: run tools/job-options";
}
