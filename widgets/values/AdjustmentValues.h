#pragma once

#include "foundation/core/GDict.h"
#include "foundation/core/GString.h"

#include <QtGlobal>

#include <array>
#include <optional>
#include <string_view>

// The adjustable values of a PDF setting: what they mean to the panel that edits them, and to the export that
// puts them over the job options.
//
//   "PrinterMarks"   all marks: "true" or "false"
//   the keys of cMarks   one mark each, before "PrinterMarks"
//   "MarkWeight"     0, 1, 2 for lines of 0.125, 0.25, 0.5 points; anything else is 0.25
//   "MarkOffset"     points, above 0
//   "BleedChoice"    1 the four own lengths, 2 the document's bleed
//   the keys of cBleeds   points
//   "BleedSlugArea", "PrintSpreads"   "true" turns it on; nothing turns it off
//
// A value that is absent, or says nothing, leaves what the job options say; it reads as empty.
namespace AdjustmentValues
{
using Values = GDict<GBuffer, GString>;

// Marks and bleeds are numbered in this order, in which the panel shows them, too. Its texts are to be
// translated in the context "GCUSPDFSettingsAdjWdt".
struct Mark
{
    const char* key;
    const char* jobOptions;  // the layout setting that says it where the values don't
    const char* text;
};
constexpr std::array cMarks = {
    Mark{"Trim", "AddCropMarks", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "&Crop")},
    Mark{"Bleed", "AddBleedMarks", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "&Bleed")},
    Mark{"PrinterRegistration", "AddRegMarks", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Re&gistration")},
    Mark{"ColorBars", "AddColorBars", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Co&lor Bars")},
    Mark{"PageInfo", "AddPageInfo", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Page &Information")},
};
constexpr int cMarkCount = static_cast<int>(cMarks.size());
constexpr int cBleedMark = 1;
static_assert(std::string_view(cMarks[cBleedMark].key) == "Bleed");

struct Bleed
{
    const char* key;
    const char* text;
    const char* name;  // for those who do not see where the field is
};
constexpr std::array cBleeds = {
    Bleed{"BleedTopValue", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Top:"),
          QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Bleed at the top")},
    Bleed{"BleedBottomValue", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Bottom:"),
          QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Bleed at the bottom")},
    Bleed{"BleedInsideValue", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Inside:"),
          QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Bleed on the inside")},
    Bleed{"BleedOutsideValue", QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Outside:"),
          QT_TRANSLATE_NOOP("GCUSPDFSettingsAdjWdt", "Bleed on the outside")},
};
constexpr int cBleedCount = static_cast<int>(cBleeds.size());

// Whether the mark is set, by its own value or that of all marks.
std::optional<bool> GetMark(const Values& values, int mark);

// 0, 1 or 2, and the points of each.
std::optional<int> GetMarkWeight(const Values& values);
constexpr std::array<double, 3> cWeightPoints = {0.125, 0.25, 0.5};

std::optional<double> GetMarkOffset(const Values& values);
std::optional<double> GetBleed(const Values& values, int bleed);

// Whether the document's bleed is used instead of the own lengths.
std::optional<bool> UsesDocumentBleed(const Values& values);

bool IsSlugIncluded(const Values& values);
bool AreSpreadsPrinted(const Values& values);

// Each sets what is different from what the values say; an empty one removes what the values say. Where one
// mark is different, all of them are written, so that "PrinterMarks" can go along.
void SetMarks(Values& values, const std::array<std::optional<bool>, cMarkCount>& marks);
void SetMarkWeight(Values& values, std::optional<int> weight);
void SetMarkOffset(Values& values, std::optional<double> points);
void SetDocumentBleed(Values& values, std::optional<bool> isUsed);
void SetBleed(Values& values, int bleed, std::optional<double> points);
void SetSlugIncluded(Values& values, bool isIncluded);
void SetSpreadsPrinted(Values& values, bool arePrinted);
}  // namespace AdjustmentValues
