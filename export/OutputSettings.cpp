#include "export/OutputSettings.h"

#include "plugin/host/ICommand.h"
#include "widgets/values/AdjustmentValues.h"

namespace
{
// In the order of AdjustmentValues::cMarks and cBleeds, which can't see the host's preferences.
constexpr PDFSwitch cMarks[] = {PDFSwitch::CropMarks, PDFSwitch::BleedMarks, PDFSwitch::RegistrationMarks,
                                PDFSwitch::ColorBars, PDFSwitch::PageInformation};
static_assert(std::size(cMarks) == AdjustmentValues::cMarkCount);

constexpr PDFLength cBleeds[] = {PDFLength::BleedTop, PDFLength::BleedBottom, PDFLength::BleedInside,
                                 PDFLength::BleedOutside};
static_assert(std::size(cBleeds) == AdjustmentValues::cBleedCount);

void ApplyBleed(const GPrefGroup& settings, IPDFExportPreferences& preferences)
{
    const std::optional<bool> usesDocument = AdjustmentValues::UsesDocumentBleed(settings);
    if (!usesDocument)
        return;
    preferences.SetSwitch(PDFSwitch::UseDocumentBleed, *usesDocument);
    if (*usesDocument)
        return;
    for (int bleed = 0; bleed < AdjustmentValues::cBleedCount; ++bleed)
        if (const std::optional<double> points = AdjustmentValues::GetBleed(settings, bleed))
            preferences.SetLength(cBleeds[bleed], *points);
}

void ApplySlugAndSpreads(const GPrefGroup& settings, IPDFExportPreferences& preferences)
{
    if (AdjustmentValues::IsSlugIncluded(settings))
        preferences.SetSwitch(PDFSwitch::IncludeSlug, true);
    if (AdjustmentValues::AreSpreadsPrinted(settings))
        preferences.SetReaderSpreads(cReaderSpreadsOn);
}

void ApplyMarks(const GPrefGroup& settings, IPDFExportPreferences& preferences)
{
    for (int mark = 0; mark < AdjustmentValues::cMarkCount; ++mark)
        if (const std::optional<bool> isOn = AdjustmentValues::GetMark(settings, mark))
            preferences.SetSwitch(cMarks[mark], *isOn);
    if (const std::optional<double> points = AdjustmentValues::GetMarkOffset(settings))
        preferences.SetLength(PDFLength::MarkOffset, *points);
    if (const std::optional<int> weight = AdjustmentValues::GetMarkWeight(settings))
        preferences.SetLength(PDFLength::MarkWeight, AdjustmentValues::cWeightPoints.at(*weight));
}
}  // namespace

void ApplyOutputSettings(const GPrefGroup& settings, IPDFExportPreferences& preferences)
{
    ApplyBleed(settings, preferences);
    ApplySlugAndSpreads(settings, preferences);
    ApplyMarks(settings, preferences);
}
