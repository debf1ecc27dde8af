#pragma once

#include "foundation/core/GPathName.h"

// The plug-in's folders and its settings file.
namespace PlugInFolders
{
// Registers the folder "Resources/Strings" beside the module as the folder of translation files.
void RegisterTranslations();

// Registers the plug-in's own folder below the user's preference folder, and makes it if it is missing. If it
// can't be made, that is logged, and the settings are kept for this session only.
void RegisterPreferences();

// Puts the settings file in that folder into the settings store, as the module of the user's file.
void InstallSettings();

// The file with the windows' texts in the user's language, in the folder of translation files; empty if the
// language in the settings makes no valid file name. Also makes the string pool look in that folder.
GPathName FindTranslation();

// Undoes the registrations.
void Forget();
}  // namespace PlugInFolders
