#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

// What the plug-in remembers between two runs, in its own settings file (the store's module -3). If the file
// is missing or damaged, nothing is remembered. For the main thread.
namespace PlugInPreferences
{
// The name of the file in the plug-in's own folder; it is opened as a PlugInPrefModule.
extern const GString cFileName;

// The calls are counted: the first Initialize and the last Release remove what earlier runs, and this one,
// have left (SmartFileList::Sweep). The settings must be in the store at both times. One Release too many
// does nothing.
void Initialize();
void Release();

// The registry key of the Hopbox that was selected last; empty when none was.
GString GetLastSelection();
void SetLastSelection(const GString& registryKey);

// Whether the user wanted a file package for a Hopbox the last time. The group is that of the Hopbox's record
// (HopboxRecord::GetPreferenceGroup); an empty one remembers nothing.
bool HasPackageChoice(const GString& group);
bool GetPackageChoice(const GString& group);
void SetPackageChoice(const GString& group, bool isWanted);

// Forgets the package choices of all Hopboxes except these, each with its whole group, and writes the file. A
// file that can't be written is logged.
void Prune(const QStringList& groups);

// Writes the file. A file that can't be written is logged.
void Flush();
}  // namespace PlugInPreferences
