#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/core/GStringSupport.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonArray>
#include <QJsonObject>

namespace
{
void PrintAsJson(const HopboxRegistry& registry)
{
    QJsonArray list;
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        list.append(
            record ? HopboxOutput::GetJson(key, *record)
                   : QJsonObject{{QStringLiteral("Key"), key},
                                 {QStringLiteral("Error"), QStringLiteral("The record can't be read.")}});
    }
    DamageNotice::AddTo(list, registry);
    HopboxOutput::PrintJson(list);
}

void PrintAsTable(const HopboxRegistry& registry)
{
    QVector<QStringList> rows = {{QStringLiteral("KEY"), QStringLiteral("NAME"),
                                  QStringLiteral("PDF SETTINGS"), QStringLiteral("PLUG-IN"),
                                  QStringLiteral("ACTIVE")}};
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        if (record) {
            rows.append({key, record->actorName, record->entry.pdfSettings,
                         GStringSupport::FromBool(record->entry.isPlugin),
                         GStringSupport::FromBool(record->entry.isActive)});
        } else {
            rows.append({key, QStringLiteral("(can't be read)"), QString(), QString(), QString()});
        }
    }
    if (rows.size() == 1)
        Print(QStringLiteral("No Hopbox is registered.\n"));
    else
        HopboxOutput::PrintTable(rows);
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("json")});
    if (!arguments.AreValid() || !arguments.GetRest().isEmpty())
        return cExitUsage;
    const HopboxRegistry registry;
    arguments.Has("json") ? PrintAsJson(registry) : PrintAsTable(registry);
    return DamageNotice::Tell(registry);
}
}  // namespace

const Command cListCommand = {"list", "list [--json]", Run};
