#include "hosts/scribus/pdf/PdfSettings.h"

#include <cmath>

// The length of crop and bleed marks, in points.
constexpr int cMarkLength = 20;

// The bounds of Scribus's own, in dots per inch.
constexpr int cLowestResolution = 35;
constexpr int cHighestResolution = 4000;

// Scribus's numbers of the kinds of PDF/X.
static int GetVersionNumber(const PdfSettings& settings)
{
    switch (settings.kind) {
        case PdfSettings::Kind::X1a:
            return 11;
        case PdfSettings::Kind::X3:
            return 12;
        case PdfSettings::Kind::X4:
            return 10;
        case PdfSettings::Kind::Plain:
            break;
    }
    return settings.version;
}

static bool IsLength(double points)
{
    return std::isfinite(points) && points >= 0 && points <= PdfSettings::cLongest;
}

QString PdfSettings::FindFault() const
{
    if (!impossible.isEmpty())
        return QStringLiteral("they ask for %1, which this program can't make").arg(impossible);
    const struct
    {
        const char* name;
        double value;
    } lengths[] = {{"top bleed", bleedTop},       {"bottom bleed", bleedBottom},
                   {"inside bleed", bleedInside}, {"outside bleed", bleedOutside},
                   {"mark offset", markOffset},   {"mark weight", markWeight}};
    for (const auto& length : lengths) {
        if (!IsLength(length.value))
            return QStringLiteral("%1 pt is no %2").arg(length.value).arg(QLatin1String(length.name));
    }
    if (IsX() && !embedsFonts)
        return QStringLiteral("PDF/X needs its fonts embedded");
    return {};
}

QStringList PdfSettings::GetUnavailable() const
{
    QStringList missing;
    if (includesSlug)
        missing += QStringLiteral("the slug area");
    if (readerSpreads == 1)
        missing += QStringLiteral("spreads as pages");
    return missing;
}

PdfSettings::Colors PdfSettings::GetColors() const
{
    if (kind == Kind::X1a)
        return Colors::Cmyk;
    return IsX() && colors == Colors::Rgb ? Colors::Unchanged : colors;
}

bool PdfSettings::KeepsColors() const
{
    return GetColors() == Colors::Unchanged || GetColors() == Colors::Tagged;
}

bool PdfSettings::MayBeTransparent() const
{
    return kind == Kind::X4 || (kind == Kind::Plain && version > 13);
}

QString PdfSettings::GetKindText() const
{
    static const char* const cNames[] = {"PDF", "PDF/X-1a", "PDF/X-3", "PDF/X-4"};
    const QString name = QLatin1String(cNames[static_cast<int>(kind)]);
    return IsX() ? name : QStringLiteral("%1 1.%2").arg(name).arg(version - 10);
}

PdfWishes PdfSettings::MakeWishes(bool managesColors) const
{
    PdfWishes made = wishes;
    made.isX = IsX();
    made.mayBeTransparent = MayBeTransparent();
    made.compressesText = isCompressed;
    made.compressesObjects = wishes.compressesObjects && !IsX() && version >= 15;
    made.keepsProfiles = IsX() || (includesProfiles && (managesColors || GetColors() == Colors::Tagged));
    const bool hasLines = cropMarks || bleedMarks || registrationMarks;
    made.markWeight = hasLines && markWeight != cMarkWeight ? markWeight : -1;
    if (IsX())
        made.version.clear();
    else
        made.trapped.clear();
    return made;
}

using OptionRow = std::pair<const char*, double>;

static void Add(std::initializer_list<OptionRow> rows, QJsonObject& options)
{
    for (const OptionRow& row : rows)
        options.insert(QLatin1String(row.first), row.second);
}

static void AddMarks(const PdfSettings& settings, QJsonObject& options)
{
    Add(
        {
            {"cropMarks", settings.cropMarks ? 1.0 : 0.0},
            {"bleedMarks", settings.bleedMarks ? 1.0 : 0.0},
            {"registrationMarks", settings.registrationMarks ? 1.0 : 0.0},
            {"colorMarks", settings.colorBars ? 1.0 : 0.0},
            {"docInfoMarks", settings.pageInformation ? 1.0 : 0.0},
            {"markOffset", settings.markOffset},
            {"markLength", cMarkLength},
            {"useDocBleeds", settings.usesDocumentBleed ? 1.0 : 0.0},
            {"bleedt", settings.bleedTop},
            {"bleedb", settings.bleedBottom},
            {"bleedl", settings.bleedInside},
            {"bleedr", settings.bleedOutside},
        },
        options);
}

// Off, what a document may have stored from its last export by hand.
static void AddUnwanted(QJsonObject& options)
{
    Add(
        {
            {"encrypt", 0},
            {"domulti", 0},
            {"mirrorH", 0},
            {"mirrorV", 0},
            {"rotateDeg", 0},
            {"doClip", 0},
            {"presentation", 0},
            {"uselpi", 0},
            {"usespot", 1},
        },
        options);
}

QJsonObject PdfSettings::MakeOptions() const
{
    const auto flag = [](bool isOn) { return isOn ? 1 : 0; };
    constexpr int cWithoutLoss = 2;
    QJsonObject options{
        {QStringLiteral("version"), GetVersionNumber(*this)},
        {QStringLiteral("compress"), flag(isCompressed)},
        {QStringLiteral("compressmtd"), cWithoutLoss},
        {QStringLiteral("quality"), 0},
        {QStringLiteral("downsample"), 0},
        {QStringLiteral("resolution"), qBound(cLowestResolution, drawingResolution, cHighestResolution)},
        {QStringLiteral("embedPDF"), 1},
        {QStringLiteral("fontEmbedding"), embedsFonts ? 0 : 2},
        {QStringLiteral("outdst"), flag(GetColors() != Colors::Rgb)},
        {QStringLiteral("isGrayscale"), flag(GetColors() == Colors::Gray)},
        {QStringLiteral("profiles"), flag(KeepsColors())},
        {QStringLiteral("profilei"), flag(KeepsColors())},
        {QStringLiteral("noembicc"), 0},
        {QStringLiteral("thumbnails"), flag(hasThumbnails)},
        {QStringLiteral("bookmarks"), flag(hasBookmarks)},
        {QStringLiteral("useLayers"), flag(hasLayers && !IsX() && version >= 15)},
        {QStringLiteral("binding"), flag(isBoundRight)},
    };
    AddMarks(*this, options);
    AddUnwanted(options);
    return options;
}
