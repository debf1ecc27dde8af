#pragma once

#include <QString>

// Forms of Windows path texts. Text only: nothing is looked up.
namespace Morvane
{
// True for `\\server\share\...`, with either kind of separator; false for the prefixes `\\?\` and `\\.\`.
bool isUncPathText(const QString& path);

// The form that removes the limit of 260 characters: `\\?\C:\a`, `\\?\UNC\server\share\a`. Two kinds of paths
// only get native separators: those that are not absolute in the Windows sense (relative, or rooted without a
// drive), and those that have a `\\?\` or `\\.\` prefix already.
QString toLongPath(const QString& path);

// '/' separators, without "." and ".." and doubled separators, and on Windows without a `\\?\` prefix.
QString fromLongPath(const QString& path);
}  // namespace Morvane
