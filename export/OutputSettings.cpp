#include "export/OutputSettings.h"

#include "foundation/core/GStringSupport.h"
#include "plugin/host/ICommand.h"

#include <cmath>
#include <limits>

namespace
{
struct SwitchKey
{
    const char* key;
    PDFSwitch setting;
};
const SwitchKey cMarks[] = {{"Trim", PDFSwitch::CropMarks},
                            {"Bleed", PDFSwitch::BleedMarks},
                            {"PrinterRegistration", PDFSwitch::RegistrationMarks},
                            {"ColorBars", PDFSwitch::ColorBars},
                            {"PageInfo", PDFSwitch::PageInformation}};

struct LengthKey
{
    const char* key;
    PDFLength setting;
};
const LengthKey cBleeds[] = {{"BleedTopValue", PDFLength::BleedTop},
                             {"BleedBottomValue", PDFLength::BleedBottom},
                             {"BleedInsideValue", PDFLength::BleedInside},
                             {"BleedOutsideValue", PDFLength::BleedOutside}};

constexpr int32_t cOwnBleed = 1;
constexpr int32_t cDocumentBleed = 2;

constexpr int32_t cThinMarks = 0;
constexpr int32_t cMediumMarks = 1;
constexpr int32_t cThickMarks = 2;

class Overlay
{
public:
    Overlay(const GPrefGroup& settings, IPDFExportPreferences& preferences)
        : mSettings(settings), mPreferences(preferences)
    {
    }

    void SetBleed()
    {
        const int32_t choice = GetNumber("BleedChoice", 0);
        if (choice != cOwnBleed && choice != cDocumentBleed)
            return;
        mPreferences.SetSwitch(PDFSwitch::UseDocumentBleed, choice == cDocumentBleed);
        if (choice == cDocumentBleed)
            return;
        for (const LengthKey& bleed : cBleeds)
            SetLengthFrom(bleed, 0);
    }

    void SetSlugAndSpreads()
    {
        if (IsOn("BleedSlugArea"))
            mPreferences.SetSwitch(PDFSwitch::IncludeSlug, true);
        if (IsOn("PrintSpreads"))
            mPreferences.SetReaderSpreads(cReaderSpreadsOn);
    }

    void SetMarks()
    {
        const GString* all = Find("PrinterMarks");
        for (const SwitchKey& mark : cMarks) {
            const GString* own = Find(mark.key);
            if (const GString* value = own != nullptr ? own : all)
                mPreferences.SetSwitch(mark.setting, GStringSupport::ToBool(*value));
        }
    }

    void SetMarkLines()
    {
        SetLengthFrom({"MarkOffset", PDFLength::MarkOffset}, std::numeric_limits<double>::min());
        if (Find("MarkWeight") == nullptr)
            return;
        const int32_t weight = GetNumber("MarkWeight", cMediumMarks);
        mPreferences.SetLength(PDFLength::MarkWeight,
                               weight == cThinMarks ? 0.125 : (weight == cThickMarks ? 0.5 : 0.25));
    }

private:
    const GString* Find(const char* key) const { return mSettings.Find(GBuffer(key)); }

    bool IsOn(const char* key) const
    {
        const GString* value = Find(key);
        return value != nullptr && GStringSupport::ToBool(*value);
    }

    int32_t GetNumber(const char* key, int32_t fallback) const
    {
        const GString* value = Find(key);
        return value != nullptr ? GStringSupport::ToInt32(*value, fallback) : fallback;
    }

    void SetLengthFrom(const LengthKey& length, double least)
    {
        const GString* value = Find(length.key);
        const double points = value != nullptr ? GStringSupport::ToReal(*value, -1) : -1;
        if (std::isfinite(points) && points >= least)
            mPreferences.SetLength(length.setting, points);
    }

    const GPrefGroup& mSettings;
    IPDFExportPreferences& mPreferences;
};
}  // namespace

void ApplyOutputSettings(const GPrefGroup& settings, IPDFExportPreferences& preferences)
{
    Overlay overlay(settings, preferences);
    overlay.SetBleed();
    overlay.SetSlugAndSpreads();
    overlay.SetMarks();
    overlay.SetMarkLines();
}
