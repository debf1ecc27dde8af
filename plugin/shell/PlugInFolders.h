#pragma once

#include "foundation/core/GPathName.h"

// The plug-in's folders and its settings file.
namespace PlugInFolders
{
// Registers the folder "Resources/Strings" beside the module as the one of translation files.
void RegisterTranslations();

// Registers the plug-in's own folder below the user's preference folder, and makes it when it is missing. A
// failure of that is logged: the settings are then kept for this session only.
void RegisterPreferences();

// Puts the settings file in that folder into the settings store, as the module of the user's file.
void InstallSettings();

// The file of the windows' texts in the user's language, in the folder of translation files; empty where the
// language that the settings name is not the name of one. Has the string pool look in that folder, too.
GPathName FindTranslation();

// Takes the registrations back.
void Forget();
}  // namespace PlugInFolders
