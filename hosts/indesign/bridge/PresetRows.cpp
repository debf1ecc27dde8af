#include "hosts/indesign/bridge/PresetRows.h"

#include "joboptions/JobOptions.h"

#include <iterator>

namespace
{
using Section = PresetRow::Section;
using Value = PostScriptValue;

struct Name
{
    const char* setting;
    const char* item;
};

PresetRow::Sink TakeSwitch(const char* property)
{
    return [=](const Value& value, PresetSettings& settings) {
        settings.Set(property, value.GetBoolean());
        return true;
    };
}

PresetRow::Sink TakeTextAs(const char* property)
{
    return [=](const Value& value, PresetSettings& settings) {
        if (!value.GetBytes().isEmpty() && value.GetBytes() != "None")
            settings.Set(property, value.GetText());
        return true;
    };
}

bool IsStandard(const PresetSettings& settings)
{
    const QString standard = settings.GetText("standardsCompliance");
    return !standard.isEmpty() && standard != QLatin1String("NONE");
}

// What belongs to a PDF/X only can't be set for any other PDF.
PresetRow::Sink TakeTextOfStandard(const char* property)
{
    return [=](const Value& value, PresetSettings& settings) {
        return !IsStandard(settings) || TakeTextAs(property)(value, settings);
    };
}

// Names that stand in no line of the table leave the property alone.
template <size_t count>
PresetRow::Sink TakeName(const char* property, const Name (&names)[count])
{
    return [=, &names](const Value& value, PresetSettings& settings) {
        for (const Name& name : names) {
            if (value.GetBytes() == name.setting)
                settings.SetItem(property, name.item);
        }
        return true;
    };
}

const Name cColorSpaces[] = {{"LeaveColorUnchanged", "UNCHANGED_COLOR_SPACE"},
                             {"NoConversion", "UNCHANGED_COLOR_SPACE"},
                             {"UseDeviceIndependentColor", "UNCHANGED_COLOR_SPACE"},
                             {"UseDeviceIndependentColorForImages", "UNCHANGED_COLOR_SPACE"},
                             {"sRGB", "RGB"},
                             {"RGB", "RGB"},
                             {"ConvertToRGB", "RGB"},
                             {"CMYK", "CMYK"},
                             {"ConvertToCMYK", "CMYK"},
                             {"Gray", "GRAY"}};

const Name cObjectCompression[] = {
    {"All", "COMPRESS_OBJECTS"}, {"Tags", "COMPRESS_STRUCTURE"}, {"Off", "COMPRESS_NONE"}};

const Name cMarkTypes[] = {{"RomanDefault", "DEFAULT_VALUE"},
                           {"JapaneseNoCircle", "J_MARK_WITHOUT_CIRCLE"},
                           {"JapaneseWithCircle", "J_MARK_WITH_CIRCLE"}};

bool TakeVersion(const Value& value, PresetSettings& settings)
{
    static const char* const cVersions[] = {"ACROBAT_4", "ACROBAT_5", "ACROBAT_6", "ACROBAT_7", "ACROBAT_8"};
    const int step = qRound(value.GetNumber() * 10) - 13;
    settings.SetItem("acrobatCompatibility", cVersions[qBound(0, step, 4)]);
    return true;
}

PresetRow::Sink TakeCheck(const char* standard)
{
    return [=](const Value& value, PresetSettings& settings) {
        if (value.GetBoolean())
            settings.SetItem("standardsCompliance", standard);
        return true;
    };
}

bool TakeCompliance(const Value& value, PresetSettings& settings)
{
    static const Name cStandards[] = {
        {"None", "NONE"},
        {"PDFX1a:2001", "PDFX1A2001_STANDARD"},
        {"PDFX1a:2003", "PDFX1A2003_STANDARD"},
        {"PDFX3:2002", "PDFX32002_STANDARD"},
        {"PDFX3:2003", "PDFX32003_STANDARD"},
        {"PDFX4:2008", "PDFX42010_STANDARD"},
        {"PDFX4:2010", "PDFX42010_STANDARD"},
    };
    for (const Value& name : value.GetItems()) {
        const char* item = nullptr;
        for (const Name& standard : cStandards) {
            if (name.GetBytes() == standard.setting)
                item = standard.item;
        }
        if (item == nullptr)
            return false;
        settings.SetItem("standardsCompliance", item);
    }
    return true;
}

bool TakeSubset(const Value& value, PresetSettings& settings)
{
    constexpr int cAlways = 100;
    settings.Set("subsetFontsBelow", value.GetBoolean() ? cAlways : 0);
    return true;
}

bool TakeSubsetPercentage(const Value& value, PresetSettings& settings)
{
    const double percentage = value.GetNumber();
    if (settings.Get("subsetFontsBelow").toDouble() > 0 && percentage >= 1 && percentage <= 100)
        settings.Set("subsetFontsBelow", percentage);
    return true;
}

PresetRow::Sink TakeLength(const char* property)
{
    return [=](const Value& value, PresetSettings& settings) {
        settings.SetLength(property, value.GetNumber());
        return true;
    };
}

bool TakeMarkWeight(const Value& value, PresetSettings& settings)
{
    settings.SetMarkWeight(value.GetNumber());
    return true;
}

bool TakeBleed(const Value& value, PresetSettings& settings)
{
    static const char* const cProperties[] = {"bleedTop", "bleedBottom", "bleedInside", "bleedOutside"};
    for (size_t i = 0; i < std::size(cProperties); ++i)
        settings.SetLength(cProperties[i], value.GetItems()[i].GetNumber());
    return true;
}

// The application always puts fonts inside.
bool TakeEmbedding(const Value& value, PresetSettings& /*settings*/)
{
    return value.GetBoolean();
}
}  // namespace

const PostScriptValue* PresetRow::Find(const JobOptions& options) const
{
    return section == Section::Parameters ? options.FindParameter(key) : options.FindLayoutSetting(key);
}

const std::vector<PresetRow>& PresetRow::GetAll()
{
    constexpr Section parameters = Section::Parameters;
    constexpr Section layout = Section::Layout;
    static const std::vector<PresetRow> cRows = [] {
        std::vector<PresetRow> rows{
            {parameters, "CompatibilityLevel", TakeVersion},
            {parameters, "PDFX1aCheck", TakeCheck("PDFX1A2001_STANDARD")},
            {parameters, "PDFX3Check", TakeCheck("PDFX32002_STANDARD")},
            {parameters, "CheckCompliance", TakeCompliance},
            {parameters, "ColorConversionStrategy", TakeName("pdfColorSpace", cColorSpaces)},
            {layout, "ConvertColors", TakeName("pdfColorSpace", cColorSpaces)},
            {layout, "DestinationProfileName", TakeTextAs("pdfDestinationProfile")},
            {parameters, "PDFXOutputIntentProfile", TakeTextOfStandard("pdfXProfile")},
            {parameters, "PDFXOutputCondition", TakeTextOfStandard("outputCondition")},
            {parameters, "PDFXOutputConditionIdentifier", TakeTextOfStandard("outputConditionName")},
            {parameters, "PDFXRegistryName", TakeTextOfStandard("ocRegistry")},
            {parameters, "CompressPages", TakeSwitch("compressTextAndLineArt")},
            {parameters, "CompressObjects", TakeName("compressionType", cObjectCompression)},
            {parameters, "Optimize", TakeSwitch("optimizePDF")},
            {parameters, "EmbedAllFonts", TakeEmbedding},
            {parameters, "SubsetFonts", TakeSubset},
            {parameters, "MaxSubsetPct", TakeSubsetPercentage},
            {parameters, "DoThumbnails", TakeSwitch("generateThumbnails")},
            {layout, "AddCropMarks", TakeSwitch("cropMarks")},
            {layout, "AddBleedMarks", TakeSwitch("bleedMarks")},
            {layout, "AddRegMarks", TakeSwitch("registrationMarks")},
            {layout, "AddColorBars", TakeSwitch("colorBars")},
            {layout, "AddPageInfo", TakeSwitch("pageInformationMarks")},
            {layout, "PageMarksFile", TakeName("pdfMarkType", cMarkTypes)},
            {layout, "MarksOffset", TakeLength("pageMarksOffset")},
            {layout, "MarksWeight", TakeMarkWeight},
            {layout, "UseDocumentBleed", TakeSwitch("useDocumentBleedWithPDF")},
            {layout, "BleedOffset", TakeBleed},
            {layout, "IncludeSlug", TakeSwitch("includeSlugWithPDF")},
            {layout, "AsReaderSpreads", TakeSwitch("exportReaderSpreads")},
            {layout, "IncludeBookmarks", TakeSwitch("includeBookmarks")},
            {layout, "IncludeHyperlinks", TakeSwitch("includeHyperlinks")},
            {layout, "IncludeLayers", TakeSwitch("exportLayers")},
            {layout, "IncludeProfiles", TakeSwitch("includeICCProfiles")},
            {layout, "GenerateStructure", TakeSwitch("includeStructure")},
            {layout, "IncludeNonPrinting", TakeSwitch("exportNonprintingObjects")},
            {layout, "IncludeGuidesGrids", TakeSwitch("exportGuidesAndGrids")},
            {layout, "OmitPlacedBitmaps", TakeSwitch("omitBitmaps")},
            {layout, "OmitPlacedEPS", TakeSwitch("omitEPS")},
            {layout, "OmitPlacedPDF", TakeSwitch("omitPDF")},
            {layout, "SimulateOverprint", TakeSwitch("simulateOverprint")},
            {layout, "CropImagesToFrames", TakeSwitch("cropImagesToFrames")},
            {layout, "FlattenerIgnoreSpreadOverrides", TakeSwitch("ignoreSpreadOverrides")},
        };
        for (PresetRow& row : MakeImages())
            rows.push_back(std::move(row));
        return rows;
    }();
    return cRows;
}
