#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

namespace
{
int Run(const CliCall& call)
{
    const HopboxRegistry registry;
    const int status = DamageNotice::Tell(registry);
    QString key;
    const std::optional<HopboxRecord> record = HopboxOutput::FindOrFail(registry, call.GetArgument(0), key);
    if (!record)
        return cCliFailed;
    SetResult(HopboxOutput::GetJson(key, *record));
    QVector<QStringList> rows = {{QStringLiteral("Key"), key}};
    for (const auto& value : record->GetValues())
        rows.append({value.first, value.second});
    HopboxOutput::PrintTable(rows);
    return status;
}
}  // namespace

const Command cShowCommand = {{"show",
                               "print what the registry holds of a Hopbox",
                               "",
                               {{"NAME", "the Hopbox"}},
                               {},
                               {{"hopboxctl show Press", "Prints the fields of the Hopbox \"Press\"."}}},
                              Run};
