#pragma once

#include <QString>
#include <QStringList>

namespace Morvane
{
// Where an entry goes below a destination folder, made from its name. Names come from strangers: what could
// lead out of the folder, or name anything but a plain file or folder on some system, is refused on every
// system, so that an archive which extracts here extracts elsewhere.
//
// Refused are names that are empty or absolute, that begin with a drive letter, or hold ".." or a NUL, the
// device names of Windows with or without an extension ("nul", "COM1.txt"), and what the file system at hand
// can't hold. A "." and repeated separators are passed over.
struct ZipEntryPath
{
    // `name` has '/' between its parts.
    explicit ZipEntryPath(const QString& name);

    bool isSafe() const { return refusal.isEmpty(); }

    QStringList parts;
    QString refusal;  // why the name is refused, for the end of a sentence; empty when it isn't
};

// Whether the file system of this system could keep a file of that name, which has no separator.
bool canHoldName(const QString& name);
}  // namespace Morvane
