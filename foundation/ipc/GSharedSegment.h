#pragma once

#include "foundation/core/GException.h"
#include "foundation/core/GString.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

// What has a shared object's name is damaged: cut short, too large, or with a header that does not check.
// Whoever opens it finds the same; it helps to put it away and make a new one.
class GDamagedObject : public GCustomException
{
public:
    using GCustomException::GCustomException;
};

// A named piece of memory that processes of one user share. It is made for its owner only; one of the same
// name that belongs to another user or is open to others is refused.
//
// A name comes from GSessionInfo's prefixes; on POSIX it is the path of a file, which stays until it is
// removed. On Windows a segment goes with the last process that has it open. What it holds was written by
// others: read each number once, and check it before it is used.
class GSharedSegment
{
public:
    enum class Mode
    {
        Open,          // it has to be there
        OpenOrCreate,  // a new one is filled with zeros
        CreateNew      // one that an earlier process left is put away first (Windows: taken over as it is)
    };

    // Called with the memory before the constructor returns, while no other process is in such a call on this
    // segment: where a segment that is still all zero gets its first content. The identity is a number that a
    // copy of the segment, and another one of its name, does not have; 0 on Windows.
    using Prepare = std::function<void(uint8_t* data, uint64_t identity)>;

    // `size` is what is needed: a new segment gets it, one that is there and smaller is refused, and on POSIX
    // one above 64 MiB. All of it is claimed from the system here, so that the memory can be touched without
    // fear. A missing folder of the name is made, for the owner only.
    //
    // Raises with GErrorCode::cSegmentHeader when the segment is not available: a GDamagedObject for the
    // wrong size, else a text that says why, and whose it is where it is another user's. A new one that finds
    // no space leaves no name.
    GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare = {});
    ~GSharedSegment();
    GSharedSegment(const GSharedSegment&) = delete;
    GSharedSegment& operator=(const GSharedSegment&) = delete;

    // The memory, at the begin of a page, and how much of it there is: on Windows rounded up to whole pages.
    uint8_t* GetData() const { return mData; }
    size_t GetSize() const { return mSize; }

    // Whether all of the memory is still there. Where somebody has cut the segment short, what is done in it
    // reaches nobody any more. Never raises: where the system does not tell, it is false. Always true on
    // Windows.
    bool IsIntact() const;

    // Whether memory was touched that was there no more: from then on there are only zeros, for this process
    // alone. Asks nothing of the system; never on Windows.
    bool IsLost() const;

    // Whether the segment is intact and what others find under its name. Always true on Windows.
    bool IsCurrent() const;

    // False when nothing has the name; true when something does, or when that can't be found out.
    static bool IsThere(const GString& name);

    // Whether what a segment holds stays there when the last process that has it open has ended. Not on
    // Windows.
    static bool OutlivesItsUsers();

    // What follows `begin` in the names of the objects whose names begin with it. Empty on Windows.
    static std::vector<GString> ListRests(const GString& begin);

    // Takes the name away. Those who have the segment open keep it; the next one makes a new one. Nothing on
    // Windows. False when there is one that this process may not remove.
    [[nodiscard]] static bool Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
    uint8_t* mData = nullptr;
    size_t mSize = 0;
};

// Raise GErrorCode::cSegmentHeader with the text that `what`, in which %1 stands for the segment's name,
// makes; the second as a GDamagedObject.
[[noreturn]] void RaiseSegmentError(const GString& what, const GString& name);
[[noreturn]] void RaiseSegmentDamage(const GString& what, const GString& name);
