#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

namespace
{
int Show(const QString& key, const HopboxRecord& record, bool isJson)
{
    if (isJson) {
        HopboxOutput::PrintJson(HopboxOutput::GetJson(key, record));
        return cExitDone;
    }
    QVector<QStringList> rows = {{QStringLiteral("Key"), key}};
    for (const auto& value : record.GetValues())
        rows.append({value.first, value.second});
    HopboxOutput::PrintTable(rows);
    return cExitDone;
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("json")});
    if (!arguments.AreValid() || arguments.GetRest().size() != 1)
        return cExitUsage;
    QString key;
    const std::optional<HopboxRecord> record =
        HopboxOutput::FindOrFail(HopboxRegistry(), arguments.GetRest().first(), key);
    return record ? Show(key, *record, arguments.Has("json")) : cExitFailed;
}
}  // namespace

const Command cShowCommand = {"show", "show NAME [--json]", Run};
