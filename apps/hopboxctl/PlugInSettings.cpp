#include "apps/hopboxctl/PlugInSettings.h"

#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/cli/NearestWord.h"
#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefModule.h"
#include "hopbox/HopboxProject.h"
#include "widgets/values/AdjustmentValues.h"

#include <vector>

namespace
{
enum class Kind
{
    cSwitch,
    cLength,
    cDistance,  // a length that must be there
    cWeight,
    cBleedChoice
};

struct Setting
{
    const char* key;
    Kind kind;
};

// In the order in which they are listed.
const std::vector<Setting>& GetSettings()
{
    static const std::vector<Setting> cSettings = [] {
        std::vector<Setting> settings = {{"UserSettings", Kind::cSwitch},
                                         {"IncludeFilePackage", Kind::cSwitch},
                                         {"PrinterMarks", Kind::cSwitch}};
        for (const AdjustmentValues::Mark& mark : AdjustmentValues::cMarks)
            settings.push_back({mark.key, Kind::cSwitch});
        settings.push_back({"MarkWeight", Kind::cWeight});
        settings.push_back({"MarkOffset", Kind::cDistance});
        settings.push_back({"BleedChoice", Kind::cBleedChoice});
        for (const AdjustmentValues::Bleed& bleed : AdjustmentValues::cBleeds)
            settings.push_back({bleed.key, Kind::cLength});
        settings.push_back({"BleedSlugArea", Kind::cSwitch});
        settings.push_back({"PrintSpreads", Kind::cSwitch});
        return settings;
    }();
    return cSettings;
}

constexpr double cLongest = 14400;  // points: no page is longer

const Setting* FindSetting(const QString& key)
{
    for (const Setting& each : GetSettings())
        if (key == QLatin1String(each.key))
            return &each;
    return nullptr;
}

bool IsPossible(Kind kind, const QString& value)
{
    const double number = GStringSupport::ToReal(value, -1);
    switch (kind) {
        case Kind::cSwitch:
            return value == GStringSupport::FromBool(GStringSupport::ToBool(value));
        case Kind::cLength:
            return number >= 0 && number <= cLongest;
        case Kind::cDistance:
            return number > 0 && number <= cLongest;
        case Kind::cWeight:
            return value == QLatin1String("0") || value == QLatin1String("1") || value == QLatin1String("2");
        case Kind::cBleedChoice:
            break;
    }
    return value == QLatin1String("1") || value == QLatin1String("2");
}

QString Describe(Kind kind)
{
    switch (kind) {
        case Kind::cSwitch:
            return QStringLiteral("true or false");
        case Kind::cLength:
            return QStringLiteral("points, from 0 to %1").arg(cLongest);
        case Kind::cDistance:
            return QStringLiteral("points, above 0 and up to %1").arg(cLongest);
        case Kind::cWeight:
            return QStringLiteral("0, 1 or 2, for lines of 0.125, 0.25 or 0.5 points");
        case Kind::cBleedChoice:
            break;
    }
    return QStringLiteral("1 for the four lengths of its own, or 2 for the document's bleed");
}
}  // namespace

QStringList PlugInSettings::GetKeys()
{
    QStringList keys;
    for (const Setting& setting : GetSettings())
        keys.append(QLatin1String(setting.key));
    return keys;
}

QString PlugInSettings::GetValues(const QString& key)
{
    const Setting* setting = FindSetting(key);
    return setting == nullptr ? QString() : Describe(setting->kind);
}

QString PlugInSettings::FindFault(const QString& key, const QString& value)
{
    const Setting* setting = FindSetting(key);
    if (setting == nullptr)
        return QStringLiteral("A Hopbox has no setting \"%1\".").arg(HopboxOutput::GetShown(key)) +
               AskForNearestWord(key, GetKeys());
    if (IsPossible(setting->kind, value))
        return {};
    return QStringLiteral("The setting \"%1\" can't be \"%2\". It takes %3.")
        .arg(key, HopboxOutput::GetShown(value), Describe(setting->kind));
}

QString PlugInSettings::FindFault(const QStringList& assignments)
{
    for (const QString& text : assignments) {
        QString key;
        QString value;
        if (!SplitAssignment(text, key, value))
            return QStringLiteral("\"%1\" is no KEY=VALUE.").arg(HopboxOutput::GetShown(text));
        const QString fault = FindFault(key, value);
        if (fault.isEmpty())
            continue;
        return FindSetting(key) == nullptr ? fault + QLatin1String(" The settings are ") +
                                                 GetKeys().join(QLatin1String(", ")) + QLatin1Char('.')
                                           : fault;
    }
    return {};
}

void PlugInSettings::Assign(const QStringList& assignments, GPrefModule& settings)
{
    QString key;
    QString value;
    for (const QString& text : assignments) {
        if (SplitAssignment(text, key, value))
            settings.Set(HopboxProject::GetPlugInGroup(), key.toUtf8(), value);
    }
}

QJsonObject PlugInSettings::GetJson(const GPrefModule& settings)
{
    GDict<GBuffer, GString> values;
    settings.GetGroupPreferences(HopboxProject::GetPlugInGroup(), values);
    QJsonObject json;
    for (const auto& value : values)
        json.insert(QString::fromUtf8(value.key), value.value);
    return json;
}
