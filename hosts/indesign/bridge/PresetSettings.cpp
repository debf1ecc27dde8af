#include "hosts/indesign/bridge/PresetSettings.h"

#include "hosts/indesign/bridge/PresetRows.h"
#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"

#include <algorithm>

GResult PresetSettings::Read(const QString& path)
{
    JobOptions options;
    return options.Read(path).Then([&] { return ReadFrom(options); });
}

GResult PresetSettings::ReadFrom(const JobOptions& options)
{
    const QString fault = JobOptionsRules::FindFault(options);
    if (!fault.isEmpty())
        return GResult::Failure(fault);
    PresetSettings made = *this;
    for (const PresetRow& row : PresetRow::GetAll()) {
        const PostScriptValue* value = row.Find(options);
        if (value == nullptr || value->Is(PostScriptValue::Type::Null) || row.take(*value, made))
            continue;
        return GResult::Failure(
            QStringLiteral("\"%1\" has a value that this application can't do").arg(QLatin1String(row.key)));
    }
    *this = made;
    return GResult::Success();
}

void PresetSettings::Set(const char* property, const QJsonValue& value)
{
    const QString name = QLatin1String(property);
    const auto isSame = [&](const QJsonValue& pair) { return pair.toArray().first().toString() == name; };
    const auto found = std::find_if(mProperties.begin(), mProperties.end(), isSame);
    const QJsonArray pair{name, value};
    if (found == mProperties.end())
        mProperties.append(pair);
    else
        *found = pair;
}

void PresetSettings::SetItem(const char* property, const char* item)
{
    Set(property, QLatin1String(item));
}

void PresetSettings::SetLength(const char* property, double points)
{
    Set(property, QString::number(points, 'f', 4) + QStringLiteral("pt"));
}

void PresetSettings::SetMarkWeight(double points)
{
    constexpr double cThin = (0.125 + 0.25) / 2;
    constexpr double cThick = (0.25 + 0.5) / 2;
    SetItem("printerMarkWeight", points < cThin ? "P125PT" : (points < cThick ? "P25PT" : "P50PT"));
}

QJsonValue PresetSettings::Get(const char* property) const
{
    const QString name = QLatin1String(property);
    for (const QJsonValue& pair : mProperties) {
        if (pair.toArray().first().toString() == name)
            return pair.toArray().last();
    }
    return QJsonValue(QJsonValue::Undefined);
}
