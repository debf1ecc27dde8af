#include "hosts/scribus/pdf/JobOptionRows.h"

#include "hosts/scribus/pdf/SettingsReport.h"
#include "joboptions/JobOptions.h"

#include <iterator>

namespace
{
using Type = PostScriptValue::Type;
using Kind = PdfSettings::Kind;
using Colors = PdfSettings::Colors;
using Coding = PdfImageRule::Coding;
using Section = JobOptionRow::Section;
using Answer = JobOptionRow::Answer;
using Sink = decltype(JobOptionRow::take);

bool IsBetween(double number, double least, double most)
{
    return number >= least && number <= most;
}

// A row for a switch that is taken as it stands.
JobOptionRow Switch(Section section, const char* key, bool PdfSettings::*member, const char* note)
{
    return {section,
            key,
            Answer::Honoured,
            nullptr,
            note,
            Type::Boolean,
            [member](const PostScriptValue& value, PdfSettings& settings) {
                settings.*member = value.GetBoolean();
                return true;
            }};
}

JobOptionRow WishSwitch(const char* key, bool PdfWishes::*member, const char* note)
{
    return {Section::Parameters,
            key,
            Answer::Afterwards,
            nullptr,
            note,
            Type::Boolean,
            [member](const PostScriptValue& value, PdfSettings& settings) {
                settings.wishes.*member = value.GetBoolean();
                return true;
            }};
}

Sink TakeWish(QString PdfWishes::*member)
{
    return [member](const PostScriptValue& value, PdfSettings& settings) {
        settings.wishes.*member = value.GetText();
        return true;
    };
}

Sink TakeLength(double PdfSettings::*member)
{
    return [member](const PostScriptValue& value, PdfSettings& settings) {
        settings.*member = value.GetNumber();
        return IsBetween(value.GetNumber(), 0, PdfSettings::cLongest);
    };
}

template <Kind kind>
bool TakeCheck(const PostScriptValue& value, PdfSettings& settings)
{
    if (value.GetBoolean())
        settings.kind = kind;
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
        else if (name.GetBytes() != "None")
            settings.impossible = name.GetText();
    }
    return true;
}

bool TakeVersion(const PostScriptValue& value, PdfSettings& settings)
{
    const double version = value.GetNumber();
    settings.version = version < 1.35 ? 13 : (version < 1.45 ? 14 : 15);
    if (version >= 1.55)
        settings.wishes.version = version < 1.65 ? QStringLiteral("1.6") : QStringLiteral("1.7");
    return IsBetween(version, 1, 2);
}

bool TakeProfile(const PostScriptValue& value, PdfSettings& settings)
{
    const bool isNamed = value.GetText() != QLatin1String("None");
    settings.outputProfile = isNamed ? value.GetText() : QString();
    return true;
}

bool TakeTrapped(const PostScriptValue& value, PdfSettings& settings)
{
    if (value.GetBytes() == "True" || value.GetBytes() == "False")
        settings.wishes.trapped = value.GetText();
    return true;
}

bool TakeColorStrategy(const PostScriptValue& value, PdfSettings& settings)
{
    static const struct
    {
        const char* name;
        Colors colors;
    } cStrategies[] = {{"LeaveColorUnchanged", Colors::Unchanged},
                       {"NoConversion", Colors::Unchanged},
                       {"UseDeviceIndependentColor", Colors::Tagged},
                       {"UseDeviceIndependentColorForImages", Colors::Tagged},
                       {"sRGB", Colors::Rgb},
                       {"RGB", Colors::Rgb},
                       {"ConvertToRGB", Colors::Rgb},
                       {"CMYK", Colors::Cmyk},
                       {"ConvertToCMYK", Colors::Cmyk},
                       {"Gray", Colors::Gray}};
    for (const auto& strategy : cStrategies) {
        if (value.GetBytes() == strategy.name)
            settings.colors = strategy.colors;
    }
    return true;
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

std::vector<JobOptionRow> MakeKindRows()
{
    const Section section = Section::Parameters;
    return {
        {section, "CompatibilityLevel", Answer::Honoured, nullptr,
         "1.3 to 1.7; what is below is 1.3, what is above is 1.7. A page with transparency is refused in 1.3",
         Type::Number, TakeVersion},
        {section, "PDFX1aCheck", Answer::Honoured, nullptr, "true: PDF/X-1a", Type::Boolean,
         TakeCheck<Kind::X1a>},
        {section, "PDFX3Check", Answer::Honoured, nullptr, "true: PDF/X-3", Type::Boolean,
         TakeCheck<Kind::X3>},
        {section, "CheckCompliance", Answer::Honoured, nullptr,
         "PDFX1a…, PDFX3…, PDFX4…: that kind of PDF/X. Any other kind, such as PDF/A, is refused",
         Type::Array, TakeCompliance},
        {section, "PDFXOutputIntentProfile", Answer::Honoured, nullptr,
         "the output profile of a PDF/X by its name; (None) or none: the document's own", Type::String,
         TakeProfile},
        {section, "PDFXOutputCondition", Answer::Afterwards, nullptr,
         "the output condition of a PDF/X; without it, the profile's name", Type::String,
         TakeWish(&PdfWishes::condition)},
        {section, "PDFXOutputConditionIdentifier", Answer::Afterwards, nullptr,
         "the identifier of the output condition of a PDF/X; without it, \"Custom\"", Type::String,
         TakeWish(&PdfWishes::conditionIdentifier)},
        {section, "PDFXRegistryName", Answer::Afterwards, nullptr,
         "the registry of the output condition of a PDF/X", Type::String, TakeWish(&PdfWishes::registry)},
        {section, "PDFXTrapped", Answer::Approximated, "/True|/False",
         "of a PDF/X; it has to be true or false, so Unknown stays Scribus's false", Type::Name, TakeTrapped},
        Switch(section, "CompressPages", &PdfSettings::isCompressed, "compression of texts and drawings"),
        WishSwitch("Optimize", &PdfWishes::isLinear,
                   "true: the first page can be shown before the rest is there"),
        {section, "CompressObjects", Answer::Afterwards, nullptr,
         "All: from PDF 1.5 on, objects are compressed together; Tags and Off: they are not", Type::Name,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.wishes.compressesObjects = value.GetBytes() == "All";
             return true;
         }},
    };
}

std::vector<JobOptionRow> MakeContentRows()
{
    const Section section = Section::Parameters;
    return {
        {section, "ColorConversionStrategy", Answer::Honoured, nullptr,
         "LeaveColorUnchanged, or none: colours stay what they are, with profiles where the document manages "
         "colours; UseDeviceIndependentColor…: with profiles; sRGB, RGB, CMYK, Gray: converted, spot colours "
         "too for RGB and Gray. A PDF/X-1a is always CMYK, other PDF/X are never RGB throughout",
         Type::Name, TakeColorStrategy},
        {section, "EmbedAllFonts", Answer::Honoured, nullptr, "false: no font is inside", Type::Boolean,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.embedsFonts = value.GetBoolean();
             return true;
         }},
        {section, "CannotEmbedFontPolicy", Answer::Afterwards, nullptr,
         "Error: the export fails where a font is not inside, those of placed PDFs too; Warning: the report "
         "says so",
         Type::Name,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.refusesFontsOutside = value.GetBytes() == "Error";
             return true;
         }},
        Switch(section, "SubsetFonts", &PdfSettings::subsetsFonts, "only the characters in use are inside"),
        Switch(section, "DoThumbnails", &PdfSettings::hasThumbnails, "page thumbnails"),
        {section, "Binding", Answer::Honoured, nullptr, "Right: the binding is on the right", Type::Name,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.isBoundRight = value.GetBytes() == "Right";
             return true;
         }},
        {Section::Device, "HWResolution", Answer::Honoured, nullptr,
         "its first number, within 35 to 4000: the resolution of what Scribus turns into images; without it, "
         "300",
         Type::Array, TakeDeviceResolution},
    };
}

std::vector<JobOptionRow> MakeLayoutRows()
{
    const Section section = Section::Namespaces;
    return {
        Switch(section, "AddCropMarks", &PdfSettings::cropMarks, "crop marks"),
        Switch(section, "AddBleedMarks", &PdfSettings::bleedMarks, "bleed marks"),
        Switch(section, "AddRegMarks", &PdfSettings::registrationMarks, "registration marks"),
        Switch(section, "AddColorBars", &PdfSettings::colorBars, "colour bars"),
        Switch(section, "AddPageInfo", &PdfSettings::pageInformation, "the document's name and the page"),
        {section, "MarksOffset", Answer::Honoured, nullptr,
         "the distance of the marks from the bleed, in points", Type::Number,
         TakeLength(&PdfSettings::markOffset)},
        {section, "MarksWeight", Answer::Afterwards, nullptr,
         "the width of the marks' lines, in points; without it, 0.5", Type::Number,
         TakeLength(&PdfSettings::markWeight)},
        {section, "BleedOffset", Answer::Honoured, nullptr,
         "the bleed at the top, bottom, inside and outside, in points; no more than the page's own size",
         Type::Array, TakeBleed},
        Switch(section, "UseDocumentBleed", &PdfSettings::usesDocumentBleed,
               "the document's own bleed, in the place of these; without it, true"),
        {section, "IncludeSlug", Answer::NotPossible, "false", "Scribus has no slug area", Type::Boolean,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.includesSlug = value.GetBoolean();
             return true;
         }},
        {section, "AsReaderSpreads", Answer::NotPossible, "false", "each page is one of the PDF",
         Type::Boolean,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.readerSpreads = value.GetBoolean() ? 1 : 0;
             return true;
         }},
        {section, "ConvertColors", Answer::Honoured, nullptr,
         "NoConversion, ConvertToCMYK, ConvertToRGB; it overrules ColorConversionStrategy", Type::Name,
         TakeColorStrategy},
        Switch(section, "IncludeBookmarks", &PdfSettings::hasBookmarks, "the document's bookmarks"),
        Switch(section, "IncludeLayers", &PdfSettings::hasLayers,
               "from PDF 1.5 on, layers that can be switched"),
        {section, "IncludeProfiles", Answer::Honoured, nullptr,
         "false: colours have no profiles; a PDF/X keeps those that it needs", Type::Boolean,
         [](const PostScriptValue& value, PdfSettings& settings) {
             settings.includesProfiles = value.GetBoolean();
             return true;
         }},
    };
}
}  // namespace

const PostScriptValue* JobOptionRow::Find(const JobOptions& options) const
{
    switch (section) {
        case Section::Parameters:
            return options.FindParameter(key);
        case Section::Device:
            return options.FindDeviceSetting(key);
        case Section::Namespaces:
            break;
    }
    return options.FindLayoutSetting(key);
}

std::vector<JobOptionRow> JobOptionRow::MakeTaken()
{
    std::vector<JobOptionRow> rows;
    for (auto* make : {MakeKindRows, MakeContentRows, MakeLayoutRows}) {
        for (JobOptionRow& row : make())
            rows.push_back(std::move(row));
    }
    return rows;
}

const std::vector<JobOptionRow>& JobOptionRow::GetAll()
{
    static const std::vector<JobOptionRow> rows = [] {
        std::vector<JobOptionRow> all;
        for (auto* make : {MakeTaken, MakeImages, MakeOthers}) {
            for (JobOptionRow& row : make())
                all.push_back(std::move(row));
        }
        return all;
    }();
    return rows;
}

GResult PdfSettings::Make(const JobOptions& options, PdfSettings& settings)
{
    PdfSettings made;
    for (const JobOptionRow& row : JobOptionRow::GetAll()) {
        const PostScriptValue* value = row.take ? row.Find(options) : nullptr;
        if (value == nullptr || value->Is(Type::Null))
            continue;
        const QLatin1String key(row.key);
        if (!value->Is(row.type))
            return GResult::Failure(QStringLiteral("\"%1\" has a value of another type").arg(key));
        if (!row.take(*value, made))
            return GResult::Failure(QStringLiteral("\"%1\" has a value out of bounds").arg(key));
    }
    made.answers = SettingsReport::Make(options);
    settings = made;
    return GResult::Success();
}
