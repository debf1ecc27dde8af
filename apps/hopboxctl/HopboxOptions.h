#pragma once

#include "foundation/core/GPathName.h"

#include <QString>

// What commands ask of the words with which somebody describes a Hopbox. What is wrong is said on standard
// error.
namespace HopboxOptions
{
// Whether a text can stand in a registry entry: one with a line break could not be found again.
bool IsUsable(const QString& what, const QString& text);

// Whether the option names a file that can be read; whether it names job options that an export can use.
bool IsFile(const QString& option, const QString& path);
bool AreJobOptions(const QString& option, const QString& path);

// A path from the current folder, whole and without detours; empty for an empty text.
GPathName GetAbsolute(const QString& path);
}  // namespace HopboxOptions
