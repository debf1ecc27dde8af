#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/core/GStringSupport.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>
#include <QJsonObject>

namespace
{
void SetList(const HopboxRegistry& registry)
{
    QJsonArray list;
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        list.append(
            record ? HopboxOutput::GetJson(key, *record)
                   : QJsonObject{{QStringLiteral("Key"), key},
                                 {QStringLiteral("Error"), QStringLiteral("The record can't be read.")}});
    }
    SetResult(list);
}

void PrintList(const HopboxRegistry& registry)
{
    QVector<QStringList> rows = {{QStringLiteral("KEY"), QStringLiteral("NAME"),
                                  QStringLiteral("PDF SETTINGS"), QStringLiteral("PLUG-IN"),
                                  QStringLiteral("ACTIVE")}};
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        if (record) {
            rows.append({key, record->GetName(key), record->entry.pdfSettings,
                         GStringSupport::FromBool(record->entry.isPlugin),
                         GStringSupport::FromBool(record->entry.isActive)});
        } else {
            rows.append({key, QStringLiteral("(can't be read)"), QString(), QString(), QString()});
        }
    }
    if (rows.size() == 1)
        Print(QStringLiteral("You have no Hopbox yet. Make one with \"hopboxctl create\".\n"));
    else
        HopboxOutput::PrintTable(rows);
}

void PrintNames(const HopboxRegistry& registry)
{
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        Print(HopboxOutput::GetShown(record ? record->GetName(key) : key) + QLatin1Char('\n'));
    }
}

int Run(const CliCall& call)
{
    const HopboxRegistry registry;
    SetList(registry);
    call.Has("names") ? PrintNames(registry) : PrintList(registry);
    return DamageNotice::Tell(registry);
}
}  // namespace

const Command cListCommand = {
    {"list",
     "list the Hopboxes",
     "PLUG-IN is true when the export dialog offers the Hopbox, ACTIVE what the Hopbox says of itself.",
     {},
     {{"names", "", "print the names only, one on a line"}},
     {{"hopboxctl list", "Lists your Hopboxes."}}},
    Run};
