#pragma once

#include "hopbox/HopboxRegistryEntry.h"

#include <QStringList>
#include <QVector>

#include <optional>

class HopboxRegistry;
class QJsonObject;

// What the commands about Hopboxes print, for people and for programs.
namespace HopboxOutput
{
// Text as it may stand in a line on a terminal: a control character becomes "\xHH", so that no name drives
// the terminal or passes for a line of its own.
QString GetShown(const QString& text);

// Prints rows in columns that are as wide as their widest cell; the first row is the heading.
void PrintTable(const QVector<QStringList>& rows);

// A record with its key, its values under the names that they have in the registry.
QJsonObject GetJson(const QString& key, const HopboxRecord& record);

// Prints that there is no such Hopbox, with the nearest name that one has, or that there is one already;
// gives the exit status.
int FailUnknown(const HopboxRegistry& registry, const QString& name);
int FailTaken(const QString& name);

// Looks a Hopbox up by its key or its name, and sets `key` to its key. Where there is none, or its record
// can't be read, prints the error and gives none.
std::optional<HopboxRecord> FindOrFail(const HopboxRegistry& registry, const QString& name, QString& key);
}  // namespace HopboxOutput
