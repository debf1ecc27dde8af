#include "joboptions/JobOptionsRules.h"

#include "joboptions/JobOptions.h"

#include <algorithm>
#include <limits>

namespace
{
using Type = PostScriptValue::Type;

enum class Section
{
    Parameters,
    Device,
    Layout
};

// The bounds are those of a number, of each number in an array, and of the "QFactor" in a dictionary.
struct Rule
{
    Section section;
    const char* key;
    Type type;
    double least = 0;
    double most = 0;   // 0: anything goes
    size_t count = 0;  // of the numbers in an array; 0: any number of them
};

constexpr double cLongest = 14400;  // points: no page is longer
constexpr double cCoarsest = 9;     // dots per inch
constexpr double cFinest = 2400;
constexpr double cMostTimes = 10;  // of a resolution, above which an image is reduced
constexpr double cMostDots = 10000;
constexpr double cWorstQuality = 100;
constexpr double cAboveZero = std::numeric_limits<double>::min();
constexpr double cHighest = std::numeric_limits<int>::max();

const Rule cRules[] = {
    {Section::Parameters, "CompatibilityLevel", Type::Number, 1, 2},
    {Section::Parameters, "PDFX1aCheck", Type::Boolean},
    {Section::Parameters, "PDFX3Check", Type::Boolean},
    {Section::Parameters, "CheckCompliance", Type::Array},
    {Section::Parameters, "PDFXOutputIntentProfile", Type::String},
    {Section::Parameters, "PDFXOutputCondition", Type::String},
    {Section::Parameters, "PDFXOutputConditionIdentifier", Type::String},
    {Section::Parameters, "PDFXRegistryName", Type::String},
    {Section::Parameters, "PDFXTrapped", Type::Name},
    {Section::Parameters, "CompressPages", Type::Boolean},
    {Section::Parameters, "CompressObjects", Type::Name},
    {Section::Parameters, "Optimize", Type::Boolean},
    {Section::Parameters, "ColorImageFilter", Type::Name},
    {Section::Parameters, "AutoFilterColorImages", Type::Boolean},
    {Section::Parameters, "EncodeColorImages", Type::Boolean},
    {Section::Parameters, "ColorImageDict", Type::Dictionary, 0, cWorstQuality},
    {Section::Parameters, "ColorACSImageDict", Type::Dictionary, 0, cWorstQuality},
    {Section::Parameters, "ColorImageResolution", Type::Number, cCoarsest, cFinest},
    {Section::Parameters, "ColorImageDownsampleType", Type::Name},
    {Section::Parameters, "ColorImageDownsampleThreshold", Type::Number, 1, cMostTimes},
    {Section::Parameters, "DownsampleColorImages", Type::Boolean},
    {Section::Parameters, "ColorImageMinResolution", Type::Number, 0, cMostDots},
    {Section::Parameters, "ColorImageMinResolutionPolicy", Type::Name},
    {Section::Parameters, "GrayImageFilter", Type::Name},
    {Section::Parameters, "AutoFilterGrayImages", Type::Boolean},
    {Section::Parameters, "EncodeGrayImages", Type::Boolean},
    {Section::Parameters, "GrayImageDict", Type::Dictionary, 0, cWorstQuality},
    {Section::Parameters, "GrayACSImageDict", Type::Dictionary, 0, cWorstQuality},
    {Section::Parameters, "GrayImageResolution", Type::Number, cCoarsest, cFinest},
    {Section::Parameters, "GrayImageDownsampleType", Type::Name},
    {Section::Parameters, "GrayImageDownsampleThreshold", Type::Number, 1, cMostTimes},
    {Section::Parameters, "DownsampleGrayImages", Type::Boolean},
    {Section::Parameters, "GrayImageMinResolution", Type::Number, 0, cMostDots},
    {Section::Parameters, "GrayImageMinResolutionPolicy", Type::Name},
    {Section::Parameters, "MonoImageFilter", Type::Name},
    {Section::Parameters, "EncodeMonoImages", Type::Boolean},
    {Section::Parameters, "MonoImageResolution", Type::Number, cCoarsest, cFinest},
    {Section::Parameters, "MonoImageDownsampleType", Type::Name},
    {Section::Parameters, "MonoImageDownsampleThreshold", Type::Number, 1, cMostTimes},
    {Section::Parameters, "DownsampleMonoImages", Type::Boolean},
    {Section::Parameters, "MonoImageMinResolution", Type::Number, 0, cMostDots},
    {Section::Parameters, "MonoImageMinResolutionPolicy", Type::Name},
    {Section::Parameters, "ColorConversionStrategy", Type::Name},
    {Section::Parameters, "EmbedAllFonts", Type::Boolean},
    {Section::Parameters, "CannotEmbedFontPolicy", Type::Name},
    {Section::Parameters, "SubsetFonts", Type::Boolean},
    {Section::Parameters, "DoThumbnails", Type::Boolean},
    {Section::Parameters, "Binding", Type::Name},
    {Section::Device, "HWResolution", Type::Array, cAboveZero, cHighest, 2},
    {Section::Layout, "AddCropMarks", Type::Boolean},
    {Section::Layout, "AddBleedMarks", Type::Boolean},
    {Section::Layout, "AddRegMarks", Type::Boolean},
    {Section::Layout, "AddColorBars", Type::Boolean},
    {Section::Layout, "AddPageInfo", Type::Boolean},
    {Section::Layout, "MarksOffset", Type::Number, 0, cLongest},
    {Section::Layout, "MarksWeight", Type::Number, 0, cLongest},
    {Section::Layout, "BleedOffset", Type::Array, 0, cLongest, 4},
    {Section::Layout, "UseDocumentBleed", Type::Boolean},
    {Section::Layout, "IncludeSlug", Type::Boolean},
    {Section::Layout, "AsReaderSpreads", Type::Boolean},
    {Section::Layout, "ConvertColors", Type::Name},
    {Section::Layout, "IncludeBookmarks", Type::Boolean},
    {Section::Layout, "IncludeLayers", Type::Boolean},
    {Section::Layout, "IncludeProfiles", Type::Boolean},
};

const PostScriptValue* Find(const JobOptions& options, const Rule& rule)
{
    switch (rule.section) {
        case Section::Parameters:
            return options.FindParameter(rule.key);
        case Section::Device:
            return options.FindDeviceSetting(rule.key);
        case Section::Layout:
            break;
    }
    return options.FindLayoutSetting(rule.key);
}

bool IsNumber(const PostScriptValue& value, const Rule& rule)
{
    return value.Is(Type::Number) && value.GetNumber() >= rule.least && value.GetNumber() <= rule.most;
}

bool IsKept(const PostScriptValue& value, const Rule& rule)
{
    if (!value.Is(rule.type) || rule.most == 0)
        return value.Is(rule.type);
    if (rule.type == Type::Number)
        return IsNumber(value, rule);
    if (rule.type == Type::Dictionary) {
        const PostScriptValue* factor = value.Find("QFactor");
        return factor == nullptr || IsNumber(*factor, rule);
    }
    return value.GetItems().size() == rule.count &&
           std::all_of(value.GetItems().begin(), value.GetItems().end(),
                       [&](const PostScriptValue& item) { return IsNumber(item, rule); });
}

QString GetBounds(const Rule& rule)
{
    return rule.least == cAboveZero ? QStringLiteral("above 0")
                                    : QStringLiteral("from %1 to %2").arg(rule.least).arg(rule.most);
}

QString Describe(const Rule& rule)
{
    switch (rule.type) {
        case Type::Boolean:
            return QStringLiteral("true or false");
        case Type::Number:
            return QStringLiteral("a number ") + GetBounds(rule);
        case Type::Name:
            return QStringLiteral("a name, as /Left is");
        case Type::String:
            return QStringLiteral("a text in parentheses");
        case Type::Dictionary:
            return QStringLiteral("a dictionary, with a \"QFactor\" ") + GetBounds(rule);
        case Type::Array:
        case Type::Null:
            break;
    }
    return rule.count == 0 ? QStringLiteral("an array")
                           : QStringLiteral("an array of %1 numbers %2").arg(rule.count).arg(GetBounds(rule));
}
}  // namespace

QString JobOptionsRules::FindFault(const JobOptions& options)
{
    for (const Rule& rule : cRules) {
        const PostScriptValue* value = Find(options, rule);
        if (value != nullptr && !value->Is(Type::Null) && !IsKept(*value, rule))
            return QStringLiteral("\"%1\" takes %2").arg(QLatin1String(rule.key), Describe(rule));
    }
    return {};
}
