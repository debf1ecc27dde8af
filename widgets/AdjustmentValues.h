#pragma once

#include "foundation/core/GDict.h"
#include "foundation/core/GString.h"

#include <QtCore/qnamespace.h>

#include <array>
#include <optional>

// The adjustable values of a PDF setting, as they are understood by an export. A state of PartiallyChecked,
// and an empty length or choice, stand for a value that leaves what the job options say.
namespace AdjustmentValues
{
using Values = GDict<GBuffer, GString>;

constexpr int cMarkCount = 5;
extern const std::array<const char*, cMarkCount> cMarkKeys;
constexpr int cBleedMark = 1;  // among the five

constexpr int cBleedCount = 4;
extern const std::array<const char*, cBleedCount> cBleedKeys;

Qt::CheckState GetMark(const Values& values, int mark);

// 0, 1 or 2.
std::optional<int> GetMarkWeight(const Values& values);

std::optional<double> GetMarkOffset(const Values& values);
std::optional<double> GetBleed(const Values& values, int bleed);

// Checked for the document's bleed, unchecked for the own one.
Qt::CheckState GetDocumentBleed(const Values& values);

bool IsSlugIncluded(const Values& values);
bool AreSpreadsPrinted(const Values& values);

// Each sets what is different from the values, and nothing for a state that leaves what the job options say.
// All five marks are written where one is different, so that "PrinterMarks" can go along.
void SetMarks(Values& values, const std::array<Qt::CheckState, cMarkCount>& marks);
void SetMarkWeight(Values& values, int weight);
void SetMarkOffset(Values& values, double points);
void SetDocumentBleed(Values& values, Qt::CheckState state);
void SetBleed(Values& values, int bleed, double points);
void SetSlugIncluded(Values& values, bool isIncluded);
void SetSpreadsPrinted(Values& values, bool arePrinted);
}  // namespace AdjustmentValues
