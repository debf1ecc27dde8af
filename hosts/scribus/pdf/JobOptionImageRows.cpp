#include "hosts/scribus/pdf/JobOptionRows.h"

// The settings of images: the same ones for those in colour, in gray, and of one bit.

namespace
{
using Type = PostScriptValue::Type;
using Coding = PdfImageRule::Coding;
using Section = JobOptionRow::Section;
using Answer = JobOptionRow::Answer;
using Rule = PdfImageRule PdfImageRules::*;

// A class of images, with the texts that its settings are named by.
struct Class
{
    Rule rule;
    const char* keys[11];
};

enum Key
{
    Filter,
    AutoFilter,
    Encode,
    Dict,
    AcsDict,
    Resolution,
    Way,
    Threshold,
    Downsample,
    LeastResolution,
    LeastPolicy
};

const Class cColor = {
    &PdfImageRules::color,
    {"ColorImageFilter", "AutoFilterColorImages", "EncodeColorImages", "ColorImageDict", "ColorACSImageDict",
     "ColorImageResolution", "ColorImageDownsampleType", "ColorImageDownsampleThreshold",
     "DownsampleColorImages", "ColorImageMinResolution", "ColorImageMinResolutionPolicy"}};
const Class cGray = {
    &PdfImageRules::gray,
    {"GrayImageFilter", "AutoFilterGrayImages", "EncodeGrayImages", "GrayImageDict", "GrayACSImageDict",
     "GrayImageResolution", "GrayImageDownsampleType", "GrayImageDownsampleThreshold", "DownsampleGrayImages",
     "GrayImageMinResolution", "GrayImageMinResolutionPolicy"}};
const Class cMono = {&PdfImageRules::mono,
                     {"MonoImageFilter", nullptr, "EncodeMonoImages", nullptr, nullptr, "MonoImageResolution",
                      "MonoImageDownsampleType", "MonoImageDownsampleThreshold", "DownsampleMonoImages",
                      "MonoImageMinResolution", "MonoImageMinResolutionPolicy"}};

// What takes a value into the rule of a class.
using TakeRule = bool (*)(const PostScriptValue& value, PdfImageRule& rule);

JobOptionRow MakeRow(const Class& images, Key key, Answer answer, const char* exact, const char* note,
                     Type type, TakeRule take)
{
    const Rule rule = images.rule;
    return {Section::Parameters,
            images.keys[key],
            answer,
            exact,
            note,
            type,
            [rule, take](const PostScriptValue& value, PdfSettings& settings) {
                return take(value, settings.wishes.images.*rule);
            }};
}

bool IsBetween(double number, double least, double most)
{
    return number >= least && number <= most;
}

bool TakeFilter(const PostScriptValue& value, PdfImageRule& rule)
{
    const bool isJpeg = value.GetBytes() == "DCTEncode" || value.GetBytes() == "JPXEncode";
    rule.coding = isJpeg ? Coding::Jpeg : Coding::Flate;
    return true;
}

bool TakeAutoFilter(const PostScriptValue& value, PdfImageRule& rule)
{
    if (value.GetBoolean())
        rule.coding = Coding::Automatic;
    return true;
}

bool TakeEncode(const PostScriptValue& value, PdfImageRule& rule)
{
    if (!value.GetBoolean())
        rule.coding = Coding::None;
    return true;
}

// The loss that JPEG may have, and whether colour has half the dots.
bool TakeJpeg(const PostScriptValue& value, PdfImageRule& rule)
{
    if (const PostScriptValue* samples = value.Find("HSamples")) {
        const auto& items = samples->GetItems();
        rule.halvesColor = !items.empty() && items.front().GetNumber() > 1;
    }
    const PostScriptValue* factor = value.Find("QFactor");
    if (factor == nullptr)
        return true;
    rule.qFactor = factor->GetNumber();
    constexpr double cMostLoss = 100;
    return factor->Is(Type::Number) && IsBetween(rule.qFactor, 0, cMostLoss);
}

// There are two dictionaries; the compression says which one counts, but both are to be right.
bool TakeDict(const PostScriptValue& value, PdfImageRule& rule)
{
    PdfImageRule other = rule;
    return TakeJpeg(value, rule.coding == Coding::Automatic ? other : rule);
}

bool TakeAcsDict(const PostScriptValue& value, PdfImageRule& rule)
{
    PdfImageRule other = rule;
    return TakeJpeg(value, rule.coding == Coding::Automatic ? rule : other);
}

bool TakeResolution(const PostScriptValue& value, PdfImageRule& rule)
{
    rule.resolution = value.GetNumber();
    return IsBetween(rule.resolution, 9, 2400);
}

bool TakeType(const PostScriptValue& value, PdfImageRule& rule)
{
    rule.averages = value.GetBytes() != "Subsample";
    if (value.GetBytes() == "None")
        rule.resolution = 0;
    return true;
}

bool TakeThreshold(const PostScriptValue& value, PdfImageRule& rule)
{
    rule.threshold = value.GetNumber();
    return IsBetween(rule.threshold, 1, 10);
}

bool TakeDownsample(const PostScriptValue& value, PdfImageRule& rule)
{
    if (!value.GetBoolean())
        rule.resolution = 0;
    return true;
}

bool TakeLeast(const PostScriptValue& value, PdfImageRule& rule)
{
    rule.leastResolution = value.GetNumber();
    return IsBetween(rule.leastResolution, 0, 10000);
}

bool TakePolicy(const PostScriptValue& value, PdfImageRule& rule)
{
    using Policy = PdfImageRule::Policy;
    rule.policy = value.GetBytes() == "Error"
                      ? Policy::Refuse
                      : (value.GetBytes() == "Warning" ? Policy::Warn : Policy::Accept);
    return true;
}

void AddSizeRows(const Class& images, std::vector<JobOptionRow>& rows)
{
    const Answer after = Answer::Afterwards;
    rows.push_back(
        MakeRow(images, Resolution, after, nullptr,
                "9 to 2400: images with more dots per inch get so many; without it, they keep theirs",
                Type::Number, TakeResolution));
    rows.push_back(MakeRow(images, Way, Answer::Approximated, "/Average|/Subsample|/None",
                           "Average, Subsample, None; Bicubic becomes Average", Type::Name, TakeType));
    rows.push_back(MakeRow(images, Threshold, after, nullptr,
                           "1 to 10: only images with more than so many times the resolution are reduced; "
                           "without it, 1",
                           Type::Number, TakeThreshold));
    rows.push_back(MakeRow(images, Downsample, after, nullptr, "false: images keep their dots", Type::Boolean,
                           TakeDownsample));
    rows.push_back(MakeRow(images, LeastResolution, after, nullptr,
                           "the dots per inch that images should have", Type::Number, TakeLeast));
    rows.push_back(
        MakeRow(images, LeastPolicy, after, nullptr,
                "Error: where an image has fewer, the export is made only if somebody says so; Warning: the "
                "report says so",
                Type::Name, TakePolicy));
}

void AddCodingRows(const Class& images, std::vector<JobOptionRow>& rows)
{
    const Answer after = Answer::Afterwards;
    rows.push_back(MakeRow(images, Filter, Answer::Approximated, "/DCTEncode|/FlateEncode",
                           "DCTEncode: JPEG, FlateEncode: without loss; JPXEncode becomes JPEG, any other "
                           "FlateEncode; without it, as for automatic",
                           Type::Name, TakeFilter));
    rows.push_back(MakeRow(images, AutoFilter, after, nullptr,
                           "true: JPEG, or without loss where that is smaller, whatever the filter",
                           Type::Boolean, TakeAutoFilter));
    rows.push_back(MakeRow(images, Encode, after, nullptr, "false: images are not compressed", Type::Boolean,
                           TakeEncode));
    rows.push_back(MakeRow(images, Dict, after, nullptr,
                           "QFactor: the loss of JPEG; HSamples: whether colour has half the dots",
                           Type::Dictionary, TakeDict));
    rows.push_back(MakeRow(images, AcsDict, after, nullptr, "the same, where the compression is automatic",
                           Type::Dictionary, TakeAcsDict));
}
}  // namespace

std::vector<JobOptionRow> JobOptionRow::MakeImages()
{
    std::vector<JobOptionRow> rows;
    for (const Class* images : {&cColor, &cGray}) {
        AddCodingRows(*images, rows);
        AddSizeRows(*images, rows);
    }
    rows.push_back(MakeRow(cMono, Filter, Answer::Approximated, "/FlateEncode",
                           "any becomes FlateEncode, which has no loss either", Type::Name, TakeFilter));
    rows.push_back(MakeRow(cMono, Encode, Answer::Afterwards, nullptr, "false: images are not compressed",
                           Type::Boolean, TakeEncode));
    AddSizeRows(cMono, rows);
    return rows;
}
