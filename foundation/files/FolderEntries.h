#pragma once

#include "foundation/files/FileSystem.h"

#include <QString>
#include <QStringList>

#include <functional>

// Lists of what is in a folder. Hidden and system entries are among them, "." and ".." are not; links are
// entries like any other and are not followed.
namespace Morvane
{
// The names of the folder's own entries, in the order in which the system gives them. A folder that can't be
// read whole gives none; `error` tells.
QStringList listEntries(const QString& folder, FileSystem::Error* error);

// The same, in the order of their names; a folder that is not there has none, which is no error.
QStringList listSortedEntries(const QString& folder, FileSystem::Error* error);

// The same without the companions that go along when their file is copied or moved.
QStringList listEntriesToCarry(const QString& folder, FileSystem::Error* error);

// Calls `visit` with the path of each file and link (everything but folders) at any depth of the folder. Goes
// on past what can't be read, and gives the first error: not everything was visited then.
FileSystem::Error visitFiles(const QString& folder, const std::function<void(const QString&)>& visit);

// Whether a name matches a wildcard, or one of several, without regard to case.
bool matchesWildcard(const QString& name, const QString& wildcard);
bool matchesAnyWildcard(const QString& name, const QStringList& wildcards);
}  // namespace Morvane
