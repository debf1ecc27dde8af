#pragma once

#include <QString>
#include <QStringList>

namespace Morvane
{
// The path of an entry below a destination folder, made from the entry's name. Names can't be trusted. A name
// that could lead out of the folder on some system, or could mean something other than a plain file or
// folder, is refused on every system. So an archive that can be extracted here can be extracted on other
// systems too.
//
// These names are refused: empty and absolute names; names that begin with a drive letter, or contain ".." or
// a NUL; the device names of Windows with or without an extension ("nul", "COM1.txt"); and names that the
// file system of this system can't hold. A "." and repeated separators are ignored.
struct ZipEntryPath
{
    // `name` has '/' between its parts.
    explicit ZipEntryPath(const QString& name);

    bool isSafe() const { return refusal.isEmpty(); }

    QStringList parts;
    QString refusal;  // why the name is refused, for the end of a sentence; empty when it isn't
};

// Whether the file system of this system can hold a file with that name. The name has no separator.
bool canHoldName(const QString& name);
}  // namespace Morvane
