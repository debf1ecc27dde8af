#include "apps/hopboxctl/PlugInSettings.h"

#include "apps/hopboxctl/Arguments.h"
#include "foundation/core/GBufferSupport.h"
#include "foundation/prefs/GPrefModule.h"
#include "hopbox/HopboxProject.h"

#include <algorithm>

bool PlugInSettings::Take(const QStringList& assignments, GPrefModule& settings)
{
    QString key;
    QString value;
    const auto isAssignment = [&](const QString& text) { return SplitAssignment(text, key, value); };
    if (!std::all_of(assignments.begin(), assignments.end(), isAssignment))
        return false;
    for (const QString& text : assignments) {
        SplitAssignment(text, key, value);
        settings.Set(HopboxProject::GetPlugInGroup(), key.toUtf8(), value);
    }
    return true;
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
