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
    QStringList wishes;
    const bool hasLines = cropMarks || bleedMarks || registrationMarks;
    if (hasLines && markWeight != cMarkWeight)
        wishes += QStringLiteral("marks of %1 pt width").arg(markWeight);
    if (includesSlug)
        wishes += QStringLiteral("the slug area");
    if (readerSpreads == 1)
        wishes += QStringLiteral("spreads as pages");
    return wishes;
}

QJsonObject PdfSettings::MakeOptions() const
{
    const int downsample =
        imageResolution == 0 ? 0 : qBound(cLowestResolution, imageResolution, cHighestResolution);
    const int resolution = qBound(qMax(cLowestResolution, downsample), drawingResolution, cHighestResolution);
    const auto flag = [](bool isOn) { return isOn ? 1 : 0; };
    const bool isPrinted = isForPrinter || IsX();
    return {
        {QStringLiteral("version"), GetVersionNumber(*this)},
        {QStringLiteral("compress"), flag(isCompressed)},
        {QStringLiteral("compressmtd"), static_cast<int>(imageCompression)},
        {QStringLiteral("quality"), imageQuality},
        {QStringLiteral("downsample"), downsample},
        {QStringLiteral("resolution"), resolution},
        {QStringLiteral("fontEmbedding"), embedsFonts ? 0 : 2},
        {QStringLiteral("outdst"), flag(isPrinted)},
        {QStringLiteral("isGrayscale"), flag(isGray)},
        {QStringLiteral("cropMarks"), flag(cropMarks)},
        {QStringLiteral("bleedMarks"), flag(bleedMarks)},
        {QStringLiteral("registrationMarks"), flag(registrationMarks)},
        {QStringLiteral("colorMarks"), flag(colorBars)},
        {QStringLiteral("docInfoMarks"), flag(pageInformation)},
        {QStringLiteral("markOffset"), markOffset},
        {QStringLiteral("markLength"), cMarkLength},
        {QStringLiteral("useDocBleeds"), flag(usesDocumentBleed)},
        {QStringLiteral("bleedt"), bleedTop},
        {QStringLiteral("bleedb"), bleedBottom},
        {QStringLiteral("bleedl"), bleedInside},
        {QStringLiteral("bleedr"), bleedOutside},
        {QStringLiteral("thumbnails"), flag(hasThumbnails)},
        {QStringLiteral("binding"), flag(isBoundRight)},
        // What a document may have stored from its last export by hand.
        {QStringLiteral("encrypt"), 0},
        {QStringLiteral("domulti"), 0},
        {QStringLiteral("mirrorH"), 0},
        {QStringLiteral("mirrorV"), 0},
        {QStringLiteral("rotateDeg"), 0},
        {QStringLiteral("doClip"), 0},
        {QStringLiteral("presentation"), 0},
        {QStringLiteral("useLayers"), 0},
        {QStringLiteral("uselpi"), 0},
        {QStringLiteral("usespot"), 1},
    };
}
