#pragma once

#include <QByteArray>

#include <optional>

namespace Morvane
{
class ZipInput;

// Where the directory of an archive lies. Found by the records at the archive's end, and believed only as far
// as the directory itself confirms them: archives say too few entries, have bytes before and behind them,
// and comments of any length.
struct ZipDirectory
{
    qint64 start = 0;    // of the first record
    qint64 end = 0;      // behind the last one
    qint64 prefix = 0;   // bytes before the archive, which its own offsets leave out
    qint64 count = 0;    // entries: those that are there, or more when the archive says so; -1 when it says
                         // more than it has room for
    QByteArray comment;  // of the whole archive

    // The records that would end an archive just behind the directory: without a comment, and in the form
    // that has room for every number.
    QByteArray makeEnd() const;
};

// Whether the data of two entries overlap, which lets a small archive become any size: no honest program
// makes such. Headers that the entries share count, too.
bool haveEntriesOverlap(ZipInput& input, const ZipDirectory& directory);

// Nothing when there is none.
std::optional<ZipDirectory> findZipDirectory(ZipInput& input);
}  // namespace Morvane
