#include "SimulatedApplication.h"
#include "hosts/indesign/bridge/PresetSettings.h"
#include "joboptions/JobOptions.h"

#include <QJsonDocument>

// Job options as a preset of the application.

namespace
{
QJsonObject MakePreset(const QByteArray& jobOptions)
{
    JobOptions options;
    PresetSettings settings;
    const GResult taken = options.Parse(jobOptions).Then([&] { return settings.ReadFrom(options); });
    EXPECT_TRUE(taken.HasSucceeded()) << taken.GetReason().toStdString();
    QJsonObject preset;
    for (const QJsonValue& pair : settings.GetProperties())
        preset.insert(pair.toArray().first().toString(), pair.toArray().last());
    return preset;
}

QJsonObject Parse(const char* json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    EXPECT_FALSE(document.isNull()) << json;
    return document.object();
}
}  // namespace

TEST(IndesignPreset, SettingsBecomeProperties)
{
    const struct
    {
        const char* settings;
        const char* preset;
    } cCases[] = {
        {"/CompatibilityLevel 1.3", R"({"acrobatCompatibility":"ACROBAT_4"})"},
        {"/CompatibilityLevel 1.6", R"({"acrobatCompatibility":"ACROBAT_7"})"},
        {"/CompatibilityLevel 2", R"({"acrobatCompatibility":"ACROBAT_8"})"},
        {"/PDFX1aCheck true", R"({"standardsCompliance":"PDFX1A2001_STANDARD"})"},
        {"/PDFX3Check true", R"({"standardsCompliance":"PDFX32002_STANDARD"})"},
        {"/PDFX1aCheck false /CheckCompliance [/PDFX1a:2003]",
         R"({"standardsCompliance":"PDFX1A2003_STANDARD"})"},
        {"/CheckCompliance [/PDFX3:2003]", R"({"standardsCompliance":"PDFX32003_STANDARD"})"},
        {"/CheckCompliance [/PDFX4:2010] /PDFXOutputIntentProfile (Coated) /PDFXOutputCondition (Offset) "
         "/PDFXOutputConditionIdentifier (FOGRA39) /PDFXRegistryName (http://www.color.org)",
         R"({"standardsCompliance":"PDFX42010_STANDARD","pdfXProfile":"Coated","outputCondition":"Offset",
             "outputConditionName":"FOGRA39","ocRegistry":"http://www.color.org"})"},
        {"/CheckCompliance [/None] /PDFXOutputIntentProfile (Coated)", R"({"standardsCompliance":"NONE"})"},
        {"/ColorConversionStrategy /sRGB", R"({"pdfColorSpace":"RGB"})"},
        {"/ColorConversionStrategy /LeaveColorUnchanged", R"({"pdfColorSpace":"UNCHANGED_COLOR_SPACE"})"},
        {"/ColorConversionStrategy /Gray", R"({"pdfColorSpace":"GRAY"})"},
        {"/CompressObjects /Tags", R"({"compressionType":"COMPRESS_STRUCTURE"})"},
        {"/CompressObjects /Off", R"({"compressionType":"COMPRESS_NONE"})"},
        {"/SubsetFonts false /MaxSubsetPct 50", R"({"subsetFontsBelow":0})"},
        {"/SubsetFonts true /MaxSubsetPct 50", R"({"subsetFontsBelow":50})"},
        {"/EmbedAllFonts true", "{}"},
        {"/AutoFilterColorImages false /ColorImageFilter /DCTEncode /ColorImageDict << /QFactor 0.4 >> "
         "/ColorACSImageDict << /QFactor 2 >>",
         R"({"colorBitmapCompression":"JPEG","colorBitmapQuality":"HIGH"})"},
        {"/AutoFilterGrayImages true /GrayImageFilter /DCTEncode /GrayImageDict << /QFactor 0.4 >> "
         "/GrayACSImageDict << /QFactor 1.3 >>",
         R"({"grayscaleBitmapCompression":"AUTO_COMPRESSION","grayscaleBitmapQuality":"LOW"})"},
        {"/ColorImageAutoFilterStrategy /JPEG2000 /AutoFilterColorImages true",
         R"({"colorBitmapCompression":"AUTOMATIC_JPEG_2000"})"},
        {"/ColorImageFilter /FlateEncode /ColorImageDict << /QFactor 0.4 >>",
         R"({"colorBitmapCompression":"ZIP","colorBitmapQuality":"EIGHT_BIT"})"},
        {"/ColorImageFilter /DCTEncode /EncodeColorImages false /ColorImageDict << /QFactor 0.4 >>",
         R"({"colorBitmapCompression":"NONE"})"},
        {"/MonoImageFilter /CCITTFaxEncode", R"({"monochromeBitmapCompression":"CCIT4"})"},
        {"/DownsampleMonoImages true /MonoImageDownsampleType /Average /MonoImageResolution 1200 "
         "/MonoImageDownsampleThreshold 1.5",
         R"({"monochromeBitmapSampling":"DOWNSAMPLE","monochromeBitmapSamplingDPI":1200,
             "thresholdToCompressMonochrome":1800})"},
        {"/DownsampleGrayImages false /GrayImageDownsampleType /Bicubic /GrayImageResolution 300 "
         "/GrayImageDownsampleThreshold 1.5",
         R"({"grayscaleBitmapSampling":"NONE"})"},
        {"/OtherNamespaces [<< /MarksWeight 0.2 >>]", R"({"printerMarkWeight":"P25PT"})"},
        {"/OtherNamespaces [<< /MarksWeight 1 /PageMarksFile /JapaneseWithCircle >>]",
         R"({"printerMarkWeight":"P50PT","pdfMarkType":"J_MARK_WITH_CIRCLE"})"},
        {"/ColorConversionStrategy /CMYK /OtherNamespaces [<< /ConvertColors /ConvertToRGB "
         "/DestinationProfileName (sRGB) >>]",
         R"({"pdfColorSpace":"RGB","pdfDestinationProfile":"sRGB"})"},
        {"/OtherNamespaces [<< /BleedOffset [1 2 3.5 4] >>]",
         R"({"bleedTop":"1.0000pt","bleedBottom":"2.0000pt","bleedInside":"3.5000pt","bleedOutside":"4.0000pt"})"},
    };
    for (const auto& one : cCases)
        EXPECT_EQ(MakePreset(QByteArray("<< ") + one.settings + " >> setdistillerparams"), Parse(one.preset))
            << one.settings;
}

TEST(IndesignPreset, WhatCanNotBeDoneIsRefusedWhole)
{
    PresetSettings settings;
    settings.Set("cropMarks", true);
    for (const char* wrong :
         {"/CheckCompliance [/PDFA1B:2005]", "/EmbedAllFonts false", "/CompatibilityLevel 99"}) {
        JobOptions options;
        const QByteArray text = QByteArray("<< /Optimize true ") + wrong + " >> setdistillerparams";
        ASSERT_TRUE(options.Parse(text).HasSucceeded());
        EXPECT_FALSE(settings.ReadFrom(options).HasSucceeded()) << wrong;
        EXPECT_EQ(settings.GetProperties(), QJsonArray{(QJsonArray{"cropMarks"_q, true})});
    }
}

// The application knows each property, and takes each value: it refuses what its types do not declare.
TEST(IndesignPreset, EveryPropertyIsTakenAndTheDialogHasTheLastWord)
{
    QByteArray image;
    for (const QByteArray kind : {"Color", "Gray", "Mono"}) {
        const QByteArray filter = kind == "Mono" ? "CCITTFaxEncode" : "DCTEncode";
        image += "/" + kind + "ImageFilter /" + filter + " /" + kind + "ImageDict << /QFactor 0.15 >> /" +
                 kind + "ImageDownsampleType /Bicubic /" + kind + "ImageResolution 300 /" + kind +
                 "ImageDownsampleThreshold 1.5 ";
    }
    QByteArray switches;
    for (const char* name : {"AddCropMarks",      "AddBleedMarks",      "AddRegMarks",
                             "AddColorBars",      "AddPageInfo",        "UseDocumentBleed",
                             "IncludeSlug",       "AsReaderSpreads",    "IncludeBookmarks",
                             "IncludeHyperlinks", "IncludeLayers",      "IncludeProfiles",
                             "GenerateStructure", "IncludeNonPrinting", "IncludeGuidesGrids",
                             "OmitPlacedBitmaps", "OmitPlacedEPS",      "OmitPlacedPDF",
                             "SimulateOverprint", "CropImagesToFrames", "FlattenerIgnoreSpreadOverrides"})
        switches += QByteArray("/") + name + " true ";
    Workplace workplace(
        "<< /CompatibilityLevel 1.6 /CheckCompliance [/PDFX4:2010] /ColorConversionStrategy /CMYK "
        "/PDFXOutputIntentProfile (Coated) /PDFXOutputCondition (a) /PDFXRegistryName (b) "
        "/PDFXOutputConditionIdentifier (c) /CompressPages true /CompressObjects /All "
        "/Optimize true /SubsetFonts true /DoThumbnails true " +
            image +
            "/OtherNamespaces [<< /MarksOffset 6 /MarksWeight 0.25 /PageMarksFile /RomanDefault "
            "/BleedOffset [1 2 3 4] /DestinationProfileName (Coated) " +
            switches + ">>] >> setdistillerparams\n",
        {"UserSettings=true"_q, "Bleed=false"_q, "MarkOffset=9"_q, "MarkWeight=2"_q, "BleedChoice=1"_q,
         "BleedTopValue=8"_q, "BleedBottomValue=7"_q, "BleedInsideValue=6"_q, "BleedOutsideValue=5"_q});
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
    const QJsonObject preset = Find(application.Choose(), "exported").value("preset"_q).toObject();
    EXPECT_EQ(preset, Parse(R"({
        "acrobatCompatibility":"ACROBAT_7","standardsCompliance":"PDFX42010_STANDARD","pdfColorSpace":"CMYK",
        "pdfXProfile":"Coated","outputCondition":"a","ocRegistry":"b","outputConditionName":"c",
        "pdfDestinationProfile":"Coated","compressTextAndLineArt":true,"compressionType":"COMPRESS_OBJECTS",
        "optimizePDF":true,"subsetFontsBelow":100,"generateThumbnails":true,
        "colorBitmapCompression":"JPEG","colorBitmapQuality":"MAXIMUM","colorBitmapSampling":"BICUBIC_DOWNSAMPLE",
        "colorBitmapSamplingDPI":300,"thresholdToCompressColor":450,
        "grayscaleBitmapCompression":"JPEG","grayscaleBitmapQuality":"MAXIMUM",
        "grayscaleBitmapSampling":"BICUBIC_DOWNSAMPLE","grayscaleBitmapSamplingDPI":300,
        "thresholdToCompressGray":450,"monochromeBitmapCompression":"CCIT4",
        "monochromeBitmapSampling":"BICUBIC_DOWNSAMPLE","monochromeBitmapSamplingDPI":300,
        "thresholdToCompressMonochrome":450,"cropMarks":true,"bleedMarks":false,"registrationMarks":true,
        "colorBars":true,"pageInformationMarks":true,"pdfMarkType":"DEFAULT_VALUE","pageMarksOffset":"9.0000pt",
        "printerMarkWeight":"P50PT","useDocumentBleedWithPDF":false,"bleedTop":"8.0000pt",
        "bleedBottom":"7.0000pt","bleedInside":"6.0000pt","bleedOutside":"5.0000pt","includeSlugWithPDF":true,
        "exportReaderSpreads":true,"includeBookmarks":true,"includeHyperlinks":true,"exportLayers":true,
        "includeICCProfiles":true,"includeStructure":true,"exportNonprintingObjects":true,
        "exportGuidesAndGrids":true,"omitBitmaps":true,"omitEPS":true,"omitPDF":true,"simulateOverprint":true,
        "cropImagesToFrames":true,"ignoreSpreadOverrides":true})"));
}
