#pragma once

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

// Takes the registrations back.
void Forget();
}  // namespace PlugInFolders
