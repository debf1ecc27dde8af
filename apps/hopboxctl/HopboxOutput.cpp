#include "apps/hopboxctl/HopboxOutput.h"

#include "apps/hopboxctl/Command.h"
#include "foundation/cli/NearestWord.h"
#include "hopbox/HopboxRegistry.h"

#include <QJsonObject>

QString HopboxOutput::GetShown(const QString& text)
{
    QString shown;
    for (const QChar character : text) {
        if (character.category() == QChar::Other_Control)
            shown += QStringLiteral("\\x%1").arg(character.unicode(), 2, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown;
}

void HopboxOutput::PrintTable(const QVector<QStringList>& rows)
{
    QVector<int> widths(rows.first().size(), 0);
    for (const QStringList& row : rows) {
        for (int column = 0; column < row.size(); ++column)
            widths[column] = qMax(widths.at(column), GetShown(row.at(column)).size());
    }
    for (const QStringList& row : rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column)
            line += GetShown(row.at(column)).leftJustified(widths.at(column) + 2);
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        Print(line + QLatin1Char('\n'));
    }
}

QJsonObject HopboxOutput::GetJson(const QString& key, const HopboxRecord& record)
{
    QJsonObject json;
    for (const auto& value : record.GetValues())
        json.insert(value.first, value.second);
    json.insert(HopboxRecordKey::cIsVirtualPrinter, record.entry.isVirtualPrinter);
    json.insert(HopboxRecordKey::cIsPlugin, record.entry.isPlugin);
    json.insert(HopboxRecordKey::cIsActive, record.entry.isActive);
    json.insert(QStringLiteral("Key"), key);
    return json;
}

int HopboxOutput::FailUnknown(const HopboxRegistry& registry, const QString& name)
{
    PrintError(QStringLiteral("No Hopbox is registered as \"%1\".%2")
                   .arg(GetShown(name), GetShown(AskForNearestWord(name, registry.GetActorNames()))));
    return cCliFailed;
}

int HopboxOutput::FailTaken(const QString& name)
{
    PrintError(QStringLiteral("A Hopbox is registered as \"%1\" already.").arg(GetShown(name)));
    return cCliFailed;
}

std::optional<HopboxRecord> HopboxOutput::FindOrFail(const HopboxRegistry& registry, const QString& name,
                                                     QString& key)
{
    key = registry.FindKey(name);
    if (key.isEmpty()) {
        FailUnknown(registry, name);
        return {};
    }
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    if (!record)
        PrintError(QStringLiteral("The record \"%1\" of the registry can't be read.").arg(GetShown(key)));
    return record;
}
