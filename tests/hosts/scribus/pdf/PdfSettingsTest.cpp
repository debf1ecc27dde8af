#include "hosts/scribus/pdf/PdfSettings.h"
#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"
#include "tests/support/Test.h"

namespace
{
TEST(PdfSettingsTest, SettingsBecomeOptionsOfTheExport)
{
    const struct
    {
        QByteArray settings;
        const char* option;
        double value;
    } cases[] = {
        {"", "version", 14},
        {"/CompatibilityLevel 1.3", "version", 13},
        {"/CompatibilityLevel 1.7", "version", 15},
        {"/CompatibilityLevel 1.7 /CheckCompliance [/PDFX1a:2001]", "version", 11},
        {"/PDFX3Check true", "version", 12},
        {"/CheckCompliance [/None /PDFX4:2010]", "version", 10},
        {"/PDFX1aCheck true /ColorConversionStrategy /sRGB", "outdst", 1},
        {"/ColorConversionStrategy /sRGB", "outdst", 0},
        {"/ColorImageFilter /FlateEncode", "compressmtd", 2},
        {"/GrayImageFilter /DCTEncode", "compressmtd", 1},
        {"/ColorImageFilter /FlateEncode /AutoFilterColorImages true", "compressmtd", 0},
        {"/EncodeColorImages false /ColorImageFilter /DCTEncode", "compressmtd", 3},
        {"/ColorImageDict << /QFactor 0.15 >>", "quality", 0},
        {"/ColorImageDict << /QFactor 2.4 >>", "quality", 4},
        {"/ColorImageFilter /DCTEncode /ColorImageDict << /QFactor 0.9 >> /ColorACSImageDict << /QFactor 0.1 "
         ">>",
         "quality", 2},
        {"/ColorImageResolution 150", "downsample", 150},
        {"/ColorImageResolution 150 /DownsampleColorImages false", "downsample", 0},
        {"/EmbedAllFonts false", "fontEmbedding", 2},
        {"/OtherNamespaces [<</AddCropMarks false>> <</AddCropMarks true /MarksOffset 5.5>>]", "cropMarks",
         1},
        {"/OtherNamespaces [<</BleedOffset [1 2 3 4] /UseDocumentBleed false>>]", "bleedr", 4},
        {"/Binding null", "binding", 0},
    };
    for (const auto& item : cases) {
        JobOptions options;
        PdfSettings settings;
        QString error;
        ASSERT_TRUE(options.Parse("<<" + item.settings + ">> setdistillerparams", error))
            << error.toStdString();
        ASSERT_TRUE(PdfSettings::Make(options, settings, error)) << error.toStdString();
        EXPECT_EQ(settings.MakeOptions().value(QLatin1String(item.option)).toDouble(-1), item.value)
            << item.settings.constData();
    }
    for (const QByteArray bad :
         {"/CompatibilityLevel (1.4)", "/ColorImageResolution 1e300", "/CheckCompliance /None",
          "/OtherNamespaces [<</MarksOffset -1>>]", "/OtherNamespaces [<</BleedOffset [1]>>]"}) {
        JobOptions options;
        PdfSettings settings;
        QString error;
        ASSERT_TRUE(options.Parse("<<" + bad + ">> setdistillerparams", error));
        EXPECT_FALSE(PdfSettings::Make(options, settings, error)) << bad.constData();
        EXPECT_FALSE(JobOptionsRules::FindFault(options).isEmpty())
            << "no tool takes it: " << bad.constData();
    }
}
}  // namespace
