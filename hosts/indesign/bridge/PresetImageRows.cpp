#include "hosts/indesign/bridge/PresetRows.h"

// The settings of images: the same ones for those in colour and in gray, fewer for those of one bit.

namespace
{
using Section = PresetRow::Section;
using Value = PostScriptValue;

// A class of images: the names of its settings, and of the preset's properties.
struct Class
{
    const char* filter;
    const char* autoFilter;
    const char* strategy;
    const char* encode;
    const char* dictionary;
    const char* autoDictionary;
    const char* downsample;
    const char* way;
    const char* resolution;
    const char* threshold;

    const char* compression;
    const char* quality;
    const char* sampling;
    const char* samplingDpi;
    const char* samplingThreshold;
};

const Class cColor = {"ColorImageFilter",
                      "AutoFilterColorImages",
                      "ColorImageAutoFilterStrategy",
                      "EncodeColorImages",
                      "ColorImageDict",
                      "ColorACSImageDict",
                      "DownsampleColorImages",
                      "ColorImageDownsampleType",
                      "ColorImageResolution",
                      "ColorImageDownsampleThreshold",
                      "colorBitmapCompression",
                      "colorBitmapQuality",
                      "colorBitmapSampling",
                      "colorBitmapSamplingDPI",
                      "thresholdToCompressColor"};
const Class cGray = {"GrayImageFilter",
                     "AutoFilterGrayImages",
                     "GrayImageAutoFilterStrategy",
                     "EncodeGrayImages",
                     "GrayImageDict",
                     "GrayACSImageDict",
                     "DownsampleGrayImages",
                     "GrayImageDownsampleType",
                     "GrayImageResolution",
                     "GrayImageDownsampleThreshold",
                     "grayscaleBitmapCompression",
                     "grayscaleBitmapQuality",
                     "grayscaleBitmapSampling",
                     "grayscaleBitmapSamplingDPI",
                     "thresholdToCompressGray"};
const Class cMono = {"MonoImageFilter",
                     nullptr,
                     nullptr,
                     "EncodeMonoImages",
                     nullptr,
                     nullptr,
                     "DownsampleMonoImages",
                     "MonoImageDownsampleType",
                     "MonoImageResolution",
                     "MonoImageDownsampleThreshold",
                     "monochromeBitmapCompression",
                     nullptr,
                     "monochromeBitmapSampling",
                     "monochromeBitmapSamplingDPI",
                     "thresholdToCompressMonochrome"};

using TakeOfClass = bool (*)(const Class& images, const Value& value, PresetSettings& settings);

bool IsAutomatic(const Class& images, const PresetSettings& settings)
{
    return settings.GetText(images.compression).startsWith(QLatin1String("AUTO"));
}

bool TakeFilter(const Class& images, const Value& value, PresetSettings& settings)
{
    static const struct
    {
        const char* filter;
        const char* item;
    } cFilters[] = {{"DCTEncode", "JPEG"},
                    {"JPXEncode", "JPEG_2000"},
                    {"FlateEncode", "ZIP"},
                    {"CCITTFaxEncode", "CCIT4"},
                    {"RunLengthEncode", "RUN_LENGTH"}};
    for (const auto& filter : cFilters) {
        if (value.GetBytes() == filter.filter)
            settings.SetItem(images.compression, filter.item);
    }
    return true;
}

bool TakeAutoFilter(const Class& images, const Value& value, PresetSettings& settings)
{
    if (value.GetBoolean())
        settings.SetItem(images.compression, "AUTO_COMPRESSION");
    return true;
}

bool TakeStrategy(const Class& images, const Value& value, PresetSettings& settings)
{
    if (value.GetBytes() == "JPEG2000" && IsAutomatic(images, settings))
        settings.SetItem(images.compression, "AUTOMATIC_JPEG_2000");
    return true;
}

bool TakeEncode(const Class& images, const Value& value, PresetSettings& settings)
{
    if (!value.GetBoolean())
        settings.SetItem(images.compression, "NONE");
    return true;
}

// The application has five steps of quality for JPEG; ZIP has its own.
void SetQuality(const Class& images, const Value& dictionary, PresetSettings& settings)
{
    const Value* factor = dictionary.Find("QFactor");
    const QString compression = settings.GetText(images.compression);
    if (compression == QLatin1String("ZIP"))
        settings.SetItem(images.quality, "EIGHT_BIT");
    if (factor == nullptr || compression == QLatin1String("ZIP") || compression == QLatin1String("NONE"))
        return;
    static const struct
    {
        double most;
        const char* item;
    } cSteps[] = {{0.27, "MAXIMUM"}, {0.58, "HIGH"}, {1.03, "MEDIUM"}, {1.85, "LOW"}, {100, "MINIMUM"}};
    for (const auto& step : cSteps) {
        if (factor->GetNumber() <= step.most) {
            settings.SetItem(images.quality, step.item);
            return;
        }
    }
}

bool TakeDictionary(const Class& images, const Value& value, PresetSettings& settings)
{
    if (!IsAutomatic(images, settings))
        SetQuality(images, value, settings);
    return true;
}

bool TakeAutoDictionary(const Class& images, const Value& value, PresetSettings& settings)
{
    if (IsAutomatic(images, settings))
        SetQuality(images, value, settings);
    return true;
}

bool TakeWay(const Class& images, const Value& value, PresetSettings& settings)
{
    static const struct
    {
        const char* way;
        const char* item;
    } cWays[] = {{"Subsample", "SUBSAMPLE"},
                 {"Average", "DOWNSAMPLE"},
                 {"Bicubic", "BICUBIC_DOWNSAMPLE"},
                 {"None", "NONE"}};
    for (const auto& way : cWays) {
        if (value.GetBytes() == way.way)
            settings.SetItem(images.sampling, way.item);
    }
    return true;
}

bool TakeDownsample(const Class& images, const Value& value, PresetSettings& settings)
{
    if (!value.GetBoolean())
        settings.SetItem(images.sampling, "NONE");
    return true;
}

// A resolution that nothing is reduced to has no meaning.
bool TakeResolution(const Class& images, const Value& value, PresetSettings& settings)
{
    if (settings.GetText(images.sampling) != QLatin1String("NONE"))
        settings.Set(images.samplingDpi, qRound(value.GetNumber()));
    return true;
}

bool TakeThreshold(const Class& images, const Value& value, PresetSettings& settings)
{
    const QJsonValue resolution = settings.Get(images.samplingDpi);
    if (resolution.isDouble())
        settings.Set(images.samplingThreshold, qRound(resolution.toDouble() * value.GetNumber()));
    return true;
}

void AddRow(const Class& images, const char* key, TakeOfClass take, std::vector<PresetRow>& rows)
{
    if (key == nullptr)
        return;
    rows.push_back({Section::Parameters, key, [&images, take](const Value& value, PresetSettings& settings) {
                        return take(images, value, settings);
                    }});
}
}  // namespace

std::vector<PresetRow> PresetRow::MakeImages()
{
    std::vector<PresetRow> rows;
    for (const Class* images : {&cColor, &cGray, &cMono}) {
        AddRow(*images, images->filter, TakeFilter, rows);
        AddRow(*images, images->autoFilter, TakeAutoFilter, rows);
        AddRow(*images, images->strategy, TakeStrategy, rows);
        AddRow(*images, images->encode, TakeEncode, rows);
        AddRow(*images, images->dictionary, TakeDictionary, rows);
        AddRow(*images, images->autoDictionary, TakeAutoDictionary, rows);
        AddRow(*images, images->way, TakeWay, rows);
        AddRow(*images, images->downsample, TakeDownsample, rows);
        AddRow(*images, images->resolution, TakeResolution, rows);
        AddRow(*images, images->threshold, TakeThreshold, rows);
    }
    return rows;
}
