#pragma once

#include <QtGlobal>

#include <limits>

namespace Morvane
{
// How much an archive may put on the disk. The sizes that the archive declares are counted. Extraction never
// writes more than an entry declares, so an archive whose declared sizes are within the limits stays within
// them.
//
// By default, only what an attack would need is refused: entries whose data overlap, more than a million
// entries, and more content than the disk has room for.
struct ZipLimits
{
    static constexpr qint64 cNone = std::numeric_limits<qint64>::max();
    static constexpr qint64 cMillion = 1000000;

    qint64 entryBytes = cNone;        // of one entry
    qint64 totalBytes = cNone;        // of all that one run extracts
    qint64 entryCount = cMillion;     // entries that one run extracts
    bool allowsOverlap = false;       // whether entries may share data
    bool allowsMoreThanFree = false;  // whether the content may be more than the free space of the disk

    // No limit at all.
    static ZipLimits none() { return {cNone, cNone, cNone, true, true}; }
};

// How much of its limits one run has used.
class ZipBudget
{
public:
    explicit ZipBudget(const ZipLimits& limits) : mLimits(limits) {}

    bool canTake(qint64 bytes) const
    {
        return bytes <= mLimits.entryBytes && bytes <= mLimits.totalBytes - mBytes &&
               mEntries < mLimits.entryCount;
    }

    void take(qint64 bytes)
    {
        mBytes += bytes;
        ++mEntries;
    }

private:
    ZipLimits mLimits;
    qint64 mBytes = 0;
    qint64 mEntries = 0;
};
}  // namespace Morvane
