#pragma once

#include <QJsonObject>
#include <QStringList>

class GPrefModule;

// The settings of a Hopbox that the plug-in reads, in the project archive.
namespace PlugInSettings
{
// Sets what the texts KEY=VALUE say. False when one of them is none; nothing is set then.
bool Take(const QStringList& assignments, GPrefModule& settings);

QJsonObject GetJson(const GPrefModule& settings);
}  // namespace PlugInSettings
