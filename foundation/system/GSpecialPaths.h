#pragma once

#include <cstdint>

// The numbers of the well-known folders. Programs and string files name folders by them: a number never
// changes.
namespace GSpecialPath
{
constexpr int32_t cTemporary = -2;

// The folder above the settings folders of the host's maker.
constexpr int32_t cHostSettingsParent = -8;

// The folder of string and translation files; there is none until a program registers it.
constexpr int32_t cTranslations = 22;

// "Morvane Prefs Folder" for all users, and for this user.
constexpr int32_t cGlobalPreferences = 33;
constexpr int32_t cUserPreferences = 35;

// The plug-in's own folder; there is none until it is registered.
constexpr int32_t cPlugInPreferences = 36;

// The root of the Hopbox cache folder.
constexpr int32_t cHopboxCacheRoot = 53;
}  // namespace GSpecialPath
