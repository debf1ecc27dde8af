#pragma once

#include <QByteArray>

#include <optional>

namespace Morvane
{
class ZipInput;

// Where the directory of an archive is. The records at the archive's end lead to it, but are trusted only if
// the directory itself confirms them: archives can give too small a number of entries, and can have other
// bytes before and after them and comments of any length.
struct ZipDirectory
{
    qint64 start = 0;    // of the first record
    qint64 end = 0;      // behind the last one
    qint64 prefix = 0;   // bytes before the archive, which its own offsets leave out
    qint64 count = 0;    // entries: those that are there, or more when the archive says so; -1 when it says
                         // more than it has room for
    QByteArray comment;  // of the whole archive

    // The records that would end an archive directly after the directory: without a comment, and in the form
    // that has room for every number.
    QByteArray makeEnd() const;
};

// Whether the data of two entries overlap. With overlaps a small archive can grow to any size when it is
// extracted; no honest program makes them. Headers that entries share count, too.
bool haveEntriesOverlap(ZipInput& input, const ZipDirectory& directory);

// Finds the directory; gives nothing when there is none.
std::optional<ZipDirectory> findZipDirectory(ZipInput& input);
}  // namespace Morvane
