#include "widgets/AdjustmentValues.h"

#include "foundation/core/GStringSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace
{
using AdjustmentValues::Values;

constexpr int32_t cMediumWeight = 1;
constexpr int32_t cThickWeight = 2;

constexpr int32_t cOwnBleed = 1;
constexpr int32_t cDocumentBleed = 2;

const GString* Find(const Values& values, const char* key)
{
    return values.Find(GBuffer(key));
}

void Set(Values& values, const char* key, const GString& value)
{
    values.Insert(GBuffer(key), value);
}

bool IsOn(const Values& values, const char* key)
{
    const GString* value = Find(values, key);
    return value != nullptr && GStringSupport::ToBool(*value);
}

void SetOn(Values& values, const char* key, bool isOn)
{
    if (isOn != IsOn(values, key))
        Set(values, key, GStringSupport::FromBool(isOn));
}

std::optional<double> GetLength(const Values& values, const char* key, double least)
{
    const GString* value = Find(values, key);
    const double points = value != nullptr ? GStringSupport::ToReal(*value, -1) : -1;
    return std::isfinite(points) && points >= least ? std::make_optional(points) : std::nullopt;
}

// Fields hold lengths to a millionth of a point: what differs by less was not changed.
bool IsSameLength(const std::optional<double>& stored, double points)
{
    return stored && std::abs(*stored - points) < 1e-6;
}
}  // namespace

const std::array<const char*, AdjustmentValues::cMarkCount> AdjustmentValues::cMarkKeys = {
    "Trim", "Bleed", "PrinterRegistration", "ColorBars", "PageInfo"};

const std::array<const char*, AdjustmentValues::cBleedCount> AdjustmentValues::cBleedKeys = {
    "BleedTopValue", "BleedBottomValue", "BleedInsideValue", "BleedOutsideValue"};

Qt::CheckState AdjustmentValues::GetMark(const Values& values, int mark)
{
    const GString* value = Find(values, cMarkKeys.at(mark));
    if (value == nullptr)
        value = Find(values, "PrinterMarks");
    if (value == nullptr)
        return Qt::PartiallyChecked;
    return GStringSupport::ToBool(*value) ? Qt::Checked : Qt::Unchecked;
}

std::optional<int> AdjustmentValues::GetMarkWeight(const Values& values)
{
    const GString* value = Find(values, "MarkWeight");
    if (value == nullptr)
        return std::nullopt;
    const int32_t weight = GStringSupport::ToInt32(*value, cMediumWeight);
    return weight >= 0 && weight <= cThickWeight ? weight : cMediumWeight;
}

std::optional<double> AdjustmentValues::GetMarkOffset(const Values& values)
{
    return GetLength(values, "MarkOffset", std::numeric_limits<double>::min());
}

std::optional<double> AdjustmentValues::GetBleed(const Values& values, int bleed)
{
    return GetLength(values, cBleedKeys.at(bleed), 0);
}

Qt::CheckState AdjustmentValues::GetDocumentBleed(const Values& values)
{
    const GString* value = Find(values, "BleedChoice");
    const int32_t choice = value != nullptr ? GStringSupport::ToInt32(*value, 0) : 0;
    if (choice != cOwnBleed && choice != cDocumentBleed)
        return Qt::PartiallyChecked;
    return choice == cDocumentBleed ? Qt::Checked : Qt::Unchecked;
}

bool AdjustmentValues::IsSlugIncluded(const Values& values)
{
    return IsOn(values, "BleedSlugArea");
}

bool AdjustmentValues::AreSpreadsPrinted(const Values& values)
{
    return IsOn(values, "PrintSpreads");
}

void AdjustmentValues::SetMarks(Values& values, const std::array<Qt::CheckState, cMarkCount>& marks)
{
    bool isChanged = false;
    for (int mark = 0; mark < cMarkCount; ++mark)
        isChanged =
            isChanged || (marks.at(mark) != Qt::PartiallyChecked && marks.at(mark) != GetMark(values, mark));
    if (!isChanged)
        return;
    for (int mark = 0; mark < cMarkCount; ++mark)
        if (marks.at(mark) != Qt::PartiallyChecked)
            Set(values, cMarkKeys.at(mark), GStringSupport::FromBool(marks.at(mark) == Qt::Checked));
    if (Find(values, "PrinterMarks") != nullptr)
        Set(values, "PrinterMarks",
            GStringSupport::FromBool(std::all_of(marks.begin(), marks.end(),
                                                 [](Qt::CheckState state) { return state == Qt::Checked; })));
}

void AdjustmentValues::SetMarkWeight(Values& values, int weight)
{
    if (GetMarkWeight(values) != weight)
        Set(values, "MarkWeight", GStringSupport::FromInt32(weight));
}

void AdjustmentValues::SetMarkOffset(Values& values, double points)
{
    if (!IsSameLength(GetMarkOffset(values), points))
        Set(values, "MarkOffset", GStringSupport::FromReal(points));
}

void AdjustmentValues::SetDocumentBleed(Values& values, Qt::CheckState state)
{
    if (state != Qt::PartiallyChecked && state != GetDocumentBleed(values))
        Set(values, "BleedChoice",
            GStringSupport::FromInt32(state == Qt::Checked ? cDocumentBleed : cOwnBleed));
}

void AdjustmentValues::SetBleed(Values& values, int bleed, double points)
{
    if (!IsSameLength(GetBleed(values, bleed), points))
        Set(values, cBleedKeys.at(bleed), GStringSupport::FromReal(points));
}

void AdjustmentValues::SetSlugIncluded(Values& values, bool isIncluded)
{
    SetOn(values, "BleedSlugArea", isIncluded);
}

void AdjustmentValues::SetSpreadsPrinted(Values& values, bool arePrinted)
{
    SetOn(values, "PrintSpreads", arePrinted);
}
