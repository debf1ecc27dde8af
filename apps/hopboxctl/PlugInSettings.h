#pragma once

#include <QJsonObject>
#include <QStringList>

class GPrefModule;

// The settings of a Hopbox that the plug-in reads, in the project archive.
namespace PlugInSettings
{
// All that there are, in the order in which they are told.
QStringList GetKeys();

// What a setting takes, for people, as "true or false"; empty when there is no such setting.
QString GetValues(const QString& key);

// What is wrong with a setting and its value, for people; empty when nothing is.
QString FindFault(const QString& key, const QString& value);

// The same for the texts KEY=VALUE, of which the first fault is told.
QString FindFault(const QStringList& assignments);

// Sets what the texts KEY=VALUE say, in which there is no fault.
void Assign(const QStringList& assignments, GPrefModule& settings);

QJsonObject GetJson(const GPrefModule& settings);
}  // namespace PlugInSettings
