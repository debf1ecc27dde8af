#include "hosts/scribus/pdf/Preflight.h"

#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/ImageHeader.h"

#include <QFileInfo>

#include <algorithm>

using Policy = PdfImageRule::Policy;

QStringList Preflight::FindMissingProfiles(const DocumentInfo& info, ScribusRunner& runner)
{
    QStringList missing = info.managesColors ? info.profiles : QStringList();
    if (missing.isEmpty())
        return missing;
    for (const ColorProfile& profile : runner.GetProfiles())
        missing.removeAll(profile.name);
    return missing;
}

QString Preflight::TellLack(const QString& image, double resolution, const PdfImageRule& rule)
{
    // What Scribus rounds is no lack.
    constexpr double cTolerance = 0.5;
    if (rule.policy == Policy::Accept || resolution + cTolerance >= rule.leastResolution)
        return {};
    return QStringLiteral("%1 has %2 dots per inch, fewer than %3.")
        .arg(image)
        .arg(qRound(resolution))
        .arg(rule.leastResolution);
}

// The index of the first page of the export that shows an image; -1 for none.
int Preflight::FindPage(const DocumentImage& image) const
{
    const auto found =
        std::find_if(mPages.begin(), mPages.end(), [&](int page) { return mInfo.IsShownOn(image, page); });
    return found == mPages.end() || !image.isPrinted ? -1 : *found;
}

const PdfImageRule& Preflight::FindRule(const QString& path) const
{
    const PdfImageRules& rules = mSettings.wishes.images;
    const auto colors = ImageHeader::Read(path).colors;
    static const PdfImageRule cNone;
    if (colors == ImageHeader::Colors::Unknown)
        return cNone;
    if (colors == ImageHeader::Colors::Mono)
        return rules.mono;
    const bool isGray =
        colors == ImageHeader::Colors::Gray || mSettings.GetColors() == PdfSettings::Colors::Gray;
    return isGray ? rules.gray : rules.color;
}

QStringList Preflight::FindProblems(ScribusRunner& runner) const
{
    QStringList problems;
    for (const DocumentImage& image : mInfo.images) {
        const int page = FindPage(image);
        if (page < 0)
            continue;
        const QString place = QStringLiteral("\"%1\" on page %2")
                                  .arg(QFileInfo(image.path).fileName(), mInfo.pages[page].number);
        const QString fault = ImageHeader::FindFault(image.path);
        const PdfImageRule& rule = FindRule(image.path);
        const QString lack = TellLack(place, image.resolution, rule);
        if (!fault.isEmpty())
            problems.append(QStringLiteral("%1 %2.").arg(place, fault));
        else if (rule.policy == Policy::Refuse && !lack.isEmpty())
            problems.append(lack);
    }
    for (const QString& profile : FindMissingProfiles(mInfo, runner))
        problems.append(
            QStringLiteral("The colour profile \"%1\" is missing; another stands for it.").arg(profile));
    problems.removeDuplicates();
    return problems;
}
