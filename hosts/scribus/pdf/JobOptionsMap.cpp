#include "hosts/scribus/pdf/PdfSettings.h"
#include "joboptions/JobOptions.h"

#include <functional>
#include <iterator>

// The one table by which settings of job options become settings of Scribus's PDF export; docs/job-options.md
// shows it.

namespace
{
using Type = PostScriptValue::Type;
using Kind = PdfSettings::Kind;
using Compression = PdfSettings::ImageCompression;

// Where a setting stands.
enum class Section
{
    Parameters,
    Device,
    Marks  // the dictionaries of "OtherNamespaces", which hold what belongs to a layout application
};

struct Row
{
    Section section;
    const char* key;
    Type type;

    // Takes the value; false when it is out of bounds. A name that is not known changes nothing.
    std::function<bool(const PostScriptValue& value, PdfSettings& settings)> take;
};

bool IsBetween(double number, double least, double most)
{
    return number >= least && number <= most;
}

// A row for a switch that is taken as it stands.
Row Switch(Section section, const char* key, bool PdfSettings::*member)
{
    return {section, key, Type::Boolean, [member](const PostScriptValue& value, PdfSettings& settings) {
                settings.*member = value.GetBoolean();
                return true;
            }};
}

Row Length(const char* key, double PdfSettings::*member)
{
    return {Section::Marks, key, Type::Number, [member](const PostScriptValue& value, PdfSettings& settings) {
                settings.*member = value.GetNumber();
                return IsBetween(value.GetNumber(), 0, PdfSettings::cLongest);
            }};
}

Row Resolution(const char* key)
{
    return {Section::Parameters, key, Type::Number, [](const PostScriptValue& value, PdfSettings& settings) {
                if (!IsBetween(value.GetNumber(), 9, 2400))
                    return false;
                settings.imageResolution = static_cast<int>(value.GetNumber());
                return true;
            }};
}

// A row for a switch that, when it is off, takes back what the rows before it have set.
template <class Member>
Row Unless(const char* key, Member PdfSettings::*member, Member valueWhenOff)
{
    return {Section::Parameters, key, Type::Boolean,
            [member, valueWhenOff](const PostScriptValue& value, PdfSettings& settings) {
                if (!value.GetBoolean())
                    settings.*member = valueWhenOff;
                return true;
            }};
}

// The distiller's measure of loss as Scribus's quality.
bool TakeQuality(const PostScriptValue& value, PdfSettings& settings)
{
    const PostScriptValue* factor = value.Find("QFactor");
    if (factor == nullptr)
        return true;
    static const double cLimits[] = {0.25, 0.6, 1.0, 1.8};
    settings.imageQuality = 0;
    for (const double limit : cLimits)
        settings.imageQuality += factor->GetNumber() > limit ? 1 : 0;
    return factor->Is(Type::Number) && IsBetween(factor->GetNumber(), 0, 100);
}

bool TakeFilter(const PostScriptValue& value, PdfSettings& settings)
{
    if (value.GetBytes() == "DCTEncode" || value.GetBytes() == "JPXEncode")
        settings.imageCompression = Compression::Jpeg;
    else if (value.GetBytes() == "FlateEncode" || value.GetBytes() == "LZWEncode")
        settings.imageCompression = Compression::Flate;
    return true;
}

bool TakeColorStrategy(const PostScriptValue& value, PdfSettings& settings)
{
    settings.isForPrinter = value.GetBytes() != "sRGB" && value.GetBytes() != "RGB";
    settings.isGray = value.GetBytes() == "Gray";
    return true;
}

bool TakeCompliance(const PostScriptValue& value, PdfSettings& settings)
{
    for (const PostScriptValue& name : value.GetItems()) {
        if (name.GetBytes().startsWith("PDFX1a"))
            settings.kind = Kind::X1a;
        else if (name.GetBytes().startsWith("PDFX3"))
            settings.kind = Kind::X3;
        else if (name.GetBytes().startsWith("PDFX4"))
            settings.kind = Kind::X4;
    }
    return true;
}

template <Kind kind>
bool TakeCheck(const PostScriptValue& value, PdfSettings& settings)
{
    if (value.GetBoolean())
        settings.kind = kind;
    return true;
}

bool TakeVersion(const PostScriptValue& value, PdfSettings& settings)
{
    const double version = value.GetNumber();
    settings.version = version < 1.35 ? 13 : (version < 1.45 ? 14 : 15);
    return IsBetween(version, 1, 2);
}

bool TakeDeviceResolution(const PostScriptValue& value, PdfSettings& settings)
{
    if (value.GetItems().empty() || !value.GetItems().front().Is(Type::Number))
        return false;
    constexpr double cHighest = 100000;  // of any device
    const double resolution = value.GetItems().front().GetNumber();
    settings.drawingResolution = static_cast<int>(qBound(1.0, resolution, cHighest));
    return resolution > 0;
}

bool TakeBleed(const PostScriptValue& value, PdfSettings& settings)
{
    double PdfSettings::*const members[] = {&PdfSettings::bleedTop, &PdfSettings::bleedBottom,
                                            &PdfSettings::bleedInside, &PdfSettings::bleedOutside};
    if (value.GetItems().size() != std::size(members))
        return false;
    for (size_t i = 0; i < std::size(members); ++i) {
        const PostScriptValue& length = value.GetItems()[i];
        settings.*members[i] = length.GetNumber();
        if (!length.Is(Type::Number) || !IsBetween(length.GetNumber(), 0, PdfSettings::cLongest))
            return false;
    }
    return true;
}

// In this order: a later row may overrule an earlier one. Settings for gray images stand before those for
// colour images, as Scribus has one setting for both.
const Row cRows[] = {
    {Section::Parameters, "CompatibilityLevel", Type::Number, TakeVersion},
    {Section::Parameters, "PDFX1aCheck", Type::Boolean, TakeCheck<Kind::X1a>},
    {Section::Parameters, "PDFX3Check", Type::Boolean, TakeCheck<Kind::X3>},
    {Section::Parameters, "CheckCompliance", Type::Array, TakeCompliance},
    {Section::Parameters, "PDFXOutputIntentProfile", Type::String,
     [](const PostScriptValue& value, PdfSettings& settings) {
         const bool isNamed = value.GetText() != QLatin1String("None");
         settings.outputProfile = isNamed ? value.GetText() : QString();
         return true;
     }},
    {Section::Parameters, "PDFXOutputCondition", Type::String,
     [](const PostScriptValue& value, PdfSettings& settings) {
         settings.outputCondition = value.GetText();
         return true;
     }},
    Switch(Section::Parameters, "CompressPages", &PdfSettings::isCompressed),
    {Section::Parameters, "GrayImageFilter", Type::Name, TakeFilter},
    {Section::Parameters, "ColorImageFilter", Type::Name, TakeFilter},
    {Section::Parameters, "AutoFilterColorImages", Type::Boolean,
     [](const PostScriptValue& value, PdfSettings& settings) {
         if (value.GetBoolean())
             settings.imageCompression = Compression::Automatic;
         return true;
     }},
    Unless("EncodeColorImages", &PdfSettings::imageCompression, Compression::None),
    {Section::Parameters, "ColorImageDict", Type::Dictionary, TakeQuality},
    {Section::Parameters, "ColorACSImageDict", Type::Dictionary,
     [](const PostScriptValue& value, PdfSettings& settings) {
         return settings.imageCompression != Compression::Automatic || TakeQuality(value, settings);
     }},
    Resolution("GrayImageResolution"),
    Resolution("ColorImageResolution"),
    Unless("DownsampleColorImages", &PdfSettings::imageResolution, 0),
    {Section::Parameters, "ColorConversionStrategy", Type::Name, TakeColorStrategy},
    Switch(Section::Parameters, "EmbedAllFonts", &PdfSettings::embedsFonts),
    Switch(Section::Parameters, "SubsetFonts", &PdfSettings::subsetsFonts),
    Switch(Section::Parameters, "DoThumbnails", &PdfSettings::hasThumbnails),
    {Section::Parameters, "Binding", Type::Name,
     [](const PostScriptValue& value, PdfSettings& settings) {
         settings.isBoundRight = value.GetBytes() == "Right";
         return true;
     }},
    {Section::Device, "HWResolution", Type::Array, TakeDeviceResolution},
    Switch(Section::Marks, "AddCropMarks", &PdfSettings::cropMarks),
    Switch(Section::Marks, "AddBleedMarks", &PdfSettings::bleedMarks),
    Switch(Section::Marks, "AddRegMarks", &PdfSettings::registrationMarks),
    Switch(Section::Marks, "AddColorBars", &PdfSettings::colorBars),
    Switch(Section::Marks, "AddPageInfo", &PdfSettings::pageInformation),
    Length("MarksOffset", &PdfSettings::markOffset),
    Length("MarksWeight", &PdfSettings::markWeight),
    {Section::Marks, "BleedOffset", Type::Array, TakeBleed},
    Switch(Section::Marks, "UseDocumentBleed", &PdfSettings::usesDocumentBleed),
    Switch(Section::Marks, "IncludeSlug", &PdfSettings::includesSlug),
    {Section::Marks, "AsReaderSpreads", Type::Boolean,
     [](const PostScriptValue& value, PdfSettings& settings) {
         settings.readerSpreads = value.GetBoolean() ? 1 : 0;
         return true;
     }},
};

const PostScriptValue* Find(const JobOptions& options, const Row& row)
{
    switch (row.section) {
        case Section::Parameters:
            return options.FindParameter(row.key);
        case Section::Device:
            return options.FindDeviceSetting(row.key);
        case Section::Marks:
            break;
    }
    return options.FindLayoutSetting(row.key);
}
}  // namespace

bool PdfSettings::Make(const JobOptions& options, PdfSettings& settings, QString& error)
{
    PdfSettings made;
    for (const Row& row : cRows) {
        const PostScriptValue* value = Find(options, row);
        if (value == nullptr || value->Is(Type::Null))
            continue;
        if (!value->Is(row.type))
            error = QStringLiteral("\"%1\" has a value of another type").arg(QLatin1String(row.key));
        else if (!row.take(*value, made))
            error = QStringLiteral("\"%1\" has a value out of bounds").arg(QLatin1String(row.key));
        else
            continue;
        return false;
    }
    settings = made;
    return true;
}
