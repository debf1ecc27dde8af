#pragma once

#include "foundation/files/FileSystem.h"

#include <QString>
#include <QStringList>

#include <functional>

// Lists of what is in a folder. They include hidden and system entries, but not "." and "..". Links are
// ordinary entries and are not followed.
namespace Morvane
{
// The names of the folder's own entries, in the order in which the system gives them. If the folder can't be
// read whole, the list is empty and `error` is set.
QStringList listEntries(const QString& folder, FileSystem::Error* error);

// The same, sorted by name. For a folder that does not exist the list is empty, and that is not an error.
QStringList listSortedEntries(const QString& folder, FileSystem::Error* error);

// The same without the companions that are copied or moved together with their file.
QStringList listEntriesToCarry(const QString& folder, FileSystem::Error* error);

// Calls `visit` with the path of each file and link (everything but folders) at any depth of the folder.
// Skips what can't be read, and gives the first error: not everything was visited then.
FileSystem::Error visitFiles(const QString& folder, const std::function<void(const QString&)>& visit);

// Whether a name matches a wildcard, or one of several, without regard to case.
bool matchesWildcard(const QString& name, const QString& wildcard);
bool matchesAnyWildcard(const QString& name, const QStringList& wildcards);
}  // namespace Morvane
