#include "widgets/values/AdjustmentValues.h"

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

template <typename Value, typename ToText>
void SetOrRemove(Values& values, const char* key, const std::optional<Value>& value, ToText toText)
{
    if (value)
        Set(values, key, toText(*value));
    else
        values.Remove(GBuffer(key));
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
}  // namespace

std::optional<bool> AdjustmentValues::GetMark(const Values& values, int mark)
{
    const GString* value = Find(values, cMarks.at(mark).key);
    if (value == nullptr)
        value = Find(values, "PrinterMarks");
    return value != nullptr ? std::make_optional(GStringSupport::ToBool(*value)) : std::nullopt;
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
    return GetLength(values, cBleeds.at(bleed).key, 0);
}

std::optional<bool> AdjustmentValues::UsesDocumentBleed(const Values& values)
{
    const GString* value = Find(values, "BleedChoice");
    const int32_t choice = value != nullptr ? GStringSupport::ToInt32(*value, 0) : 0;
    const bool isKnown = choice == cOwnBleed || choice == cDocumentBleed;
    return isKnown ? std::make_optional(choice == cDocumentBleed) : std::nullopt;
}

bool AdjustmentValues::IsSlugIncluded(const Values& values)
{
    return IsOn(values, "BleedSlugArea");
}

bool AdjustmentValues::AreSpreadsPrinted(const Values& values)
{
    return IsOn(values, "PrintSpreads");
}

void AdjustmentValues::SetMarks(Values& values, const std::array<std::optional<bool>, cMarkCount>& marks)
{
    bool isChanged = false;
    for (int mark = 0; mark < cMarkCount; ++mark)
        isChanged = isChanged || marks.at(mark) != GetMark(values, mark);
    if (!isChanged)
        return;
    for (int mark = 0; mark < cMarkCount; ++mark)
        SetOrRemove(values, cMarks.at(mark).key, marks.at(mark), GStringSupport::FromBool);
    const bool areAllOn = std::all_of(marks.begin(), marks.end(), [](auto mark) { return mark == true; });
    const bool areKnown = std::all_of(marks.begin(), marks.end(), [](auto mark) { return mark.has_value(); });
    if (!areKnown)
        values.Remove("PrinterMarks");  // it would stand for the mark that has no value
    else if (Find(values, "PrinterMarks") != nullptr)
        Set(values, "PrinterMarks", GStringSupport::FromBool(areAllOn));
}

void AdjustmentValues::SetMarkWeight(Values& values, std::optional<int> weight)
{
    if (GetMarkWeight(values) != weight)
        SetOrRemove(values, "MarkWeight", weight, GStringSupport::FromInt32);
}

void AdjustmentValues::SetMarkOffset(Values& values, std::optional<double> points)
{
    if (GetMarkOffset(values) != points)
        SetOrRemove(values, "MarkOffset", points, GStringSupport::FromReal);
}

void AdjustmentValues::SetDocumentBleed(Values& values, std::optional<bool> isUsed)
{
    if (isUsed != UsesDocumentBleed(values))
        SetOrRemove(values, "BleedChoice", isUsed, [](bool isDocuments) {
            return GStringSupport::FromInt32(isDocuments ? cDocumentBleed : cOwnBleed);
        });
}

void AdjustmentValues::SetBleed(Values& values, int bleed, std::optional<double> points)
{
    if (GetBleed(values, bleed) != points)
        SetOrRemove(values, cBleeds.at(bleed).key, points, GStringSupport::FromReal);
}

void AdjustmentValues::SetSlugIncluded(Values& values, bool isIncluded)
{
    SetOn(values, "BleedSlugArea", isIncluded);
}

void AdjustmentValues::SetSpreadsPrinted(Values& values, bool arePrinted)
{
    SetOn(values, "PrintSpreads", arePrinted);
}
