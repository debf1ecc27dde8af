#include "hosts/scribus/pdf/PdfCheck.h"

#include "hosts/scribus/pdf/Preflight.h"
#include "hosts/scribus/sla/ImageHeader.h"

#include <QFileInfo>
#include <QJsonArray>

using Kind = PdfFinding::Kind;

const DocumentImage* PdfCheck::FindImage(int place, const QRectF& box) const
{
    const bool isKnown = place >= 0 && place < mPages.size() && !box.isEmpty();
    return isKnown ? mInfo.FindImage(mPages[place], box.center()) : nullptr;
}

QString PdfCheck::GetPageText(int place) const
{
    const int page = mPages.value(place, -1);
    return page >= 0 && page < mInfo.pages.size() ? mInfo.pages[page].number : QString::number(place + 1);
}

QString PdfCheck::GetPlaceText(int place, const QRectF& box, const QString& what) const
{
    const DocumentImage* image = FindImage(place, box);
    const QString object =
        image == nullptr ? what : QStringLiteral("\"%1\"").arg(QFileInfo(image->path).fileName());
    return QStringLiteral("%1 on page %2").arg(object, GetPageText(place));
}

GResult PdfCheck::CheckTransparency(const PdfFile& pdf) const
{
    QStringList places;
    for (const PdfFinding& finding : pdf.GetScan().GetFindings()) {
        const QString text = GetPlaceText(finding.page, finding.box, QStringLiteral("an object"));
        if (finding.kind == Kind::Transparency && !places.contains(text))
            places.append(text);
    }
    if (places.isEmpty())
        return GResult::Success();
    return GResult::Failure(QStringLiteral("%1 allows no transparency. Transparent: %2.")
                                .arg(mSettings.GetKindText(), places.join(QStringLiteral(", "))));
}

bool PdfCheck::IsForbidden(Kind kind) const
{
    switch (kind) {
        case Kind::Transparency:
            return !mSettings.MayBeTransparent();
        case Kind::TaggedColor:
            return mSettings.kind == PdfSettings::Kind::X1a;
        case Kind::DeviceRgb:
        case Kind::FontNotInside:
            break;
    }
    return mSettings.IsX();
}

GResult PdfCheck::CheckForX(const PdfFile& pdf, bool& isPlaced) const
{
    static const char* const cFaults[] = {"transparency", "RGB colours", "colours with a profile",
                                          "a font that is not inside"};
    QStringList faults;
    isPlaced = true;
    for (const PdfFinding& finding : pdf.GetScan().GetFindings()) {
        if (!IsForbidden(finding.kind))
            continue;
        const QString place = GetPlaceText(finding.page, finding.box, QStringLiteral("an object"));
        faults +=
            QStringLiteral("%1 (%2)").arg(place, QLatin1String(cFaults[static_cast<int>(finding.kind)]));
        isPlaced = isPlaced && finding.isInPlacedFile;
    }
    faults.removeDuplicates();
    if (faults.isEmpty())
        return GResult::Success();
    return GResult::Failure(QStringLiteral("%1 does not allow what the document has: %2.")
                                .arg(mSettings.GetKindText(), faults.join(QStringLiteral(", "))));
}

QStringList PdfCheck::CheckImages(const PdfFile& pdf)
{
    const PdfImages images(mSettings.wishes.images, [this](const PdfImage& image) { return IsGray(image); });
    QStringList refused;
    for (const auto& entry : pdf.GetScan().GetImages()) {
        const PdfImage& image = entry.second;
        const PdfImageRule& rule = images.FindRule(image);
        const QString place = GetPlaceText(image.page, image.box, QStringLiteral("An image"));
        const QString lack = Preflight::TellLack(place, image.resolution, rule);
        if (!lack.isEmpty())
            (rule.policy == PdfImageRule::Policy::Refuse ? refused : mNotes).append(lack);
    }
    return refused;
}

GResult PdfCheck::CheckFonts(const PdfFile& pdf)
{
    QStringList places;
    for (const PdfFinding& finding : pdf.GetScan().GetFindings()) {
        if (finding.kind == Kind::FontNotInside)
            places +=
                QStringLiteral("%1 of %2")
                    .arg(finding.name, GetPlaceText(finding.page, finding.box, QStringLiteral("a text")));
    }
    places.removeDuplicates();
    if (places.isEmpty() || !mSettings.embedsFonts)
        return GResult::Success();
    const QString text =
        QStringLiteral("Fonts are not inside the PDF: %1.").arg(places.join(QStringLiteral(", ")));
    if (mSettings.refusesFontsOutside)
        return GResult::Failure(text);
    mNotes.append(text);
    return GResult::Success();
}

bool PdfCheck::IsGray(const PdfImage& image) const
{
    const DocumentImage* found = FindImage(image.page, image.box);
    const auto colors =
        found == nullptr ? ImageHeader::Colors::Unknown : ImageHeader::Read(found->path).colors;
    return colors == ImageHeader::Colors::Unknown || colors == ImageHeader::Colors::Gray ||
           colors == ImageHeader::Colors::Mono;
}

QJsonObject PdfCheck::Describe(const PdfFile& pdf) const
{
    QJsonArray images;
    for (const auto& entry : pdf.GetScan().GetImages()) {
        const PdfImage& image = entry.second;
        const DocumentImage* found = FindImage(image.page, image.box);
        images.append(QJsonObject{{QStringLiteral("page"), GetPageText(image.page)},
                                  {QStringLiteral("file"), found == nullptr ? QString() : found->path},
                                  {QStringLiteral("resolution"), qRound(image.resolution)}});
    }
    QJsonArray fonts;
    for (auto font = pdf.GetScan().GetFonts().begin(); font != pdf.GetScan().GetFonts().end(); ++font)
        fonts.append(
            QJsonObject{{QStringLiteral("name"), font.key()}, {QStringLiteral("inside"), font.value()}});
    return {{QStringLiteral("images"), images},
            {QStringLiteral("fonts"), fonts},
            {QStringLiteral("notes"), QJsonArray::fromStringList(mNotes)}};
}
