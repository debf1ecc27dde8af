#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

namespace
{
void Show(const HopboxRegistry& registry, const QString& key, const HopboxRecord& record, bool isJson)
{
    if (isJson) {
        QJsonObject json = HopboxOutput::GetJson(key, record);
        DamageNotice::AddTo(json, registry);
        HopboxOutput::PrintJson(json);
        return;
    }
    QVector<QStringList> rows = {{QStringLiteral("Key"), key}};
    for (const auto& value : record.GetValues())
        rows.append({value.first, value.second});
    HopboxOutput::PrintTable(rows);
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("json")});
    if (!arguments.AreValid() || arguments.GetRest().size() != 1)
        return cExitUsage;
    const HopboxRegistry registry;
    const int status = DamageNotice::Tell(registry);
    QString key;
    const std::optional<HopboxRecord> record =
        HopboxOutput::FindOrFail(registry, arguments.GetRest().first(), key);
    if (!record)
        return cExitFailed;
    Show(registry, key, *record, arguments.Has("json"));
    return status;
}
}  // namespace

const Command cShowCommand = {"show", "show NAME [--json]", Run};
