#pragma once

#include "foundation/core/GString.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>

// A named piece of memory that processes of one user share. It is made for its owner only; one of the same
// name that belongs to another user or is open to others is refused.
//
// A name comes from GSessionInfo's prefixes. On POSIX a segment stays until it is removed by name; on Windows
// it goes with the last process that has it open. What it holds was written by others: read each number once,
// and check it before it is used.
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
    // segment: where a segment that is still all zero gets its first content.
    using Prepare = std::function<void(uint8_t* data)>;

    // `size` is what is needed: a new segment gets it, one that is there and smaller is refused, and on POSIX
    // one above 64 MiB. All of it is claimed from the system here, so that the memory can be touched without
    // fear. Raises with GErrorCode::cSegmentHeader when the segment can't be had, for want of space, too; a
    // new one then leaves no name.
    GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare = {});
    ~GSharedSegment();
    GSharedSegment(const GSharedSegment&) = delete;
    GSharedSegment& operator=(const GSharedSegment&) = delete;

    // The memory, at the begin of a page, and how much of it there is: on Windows rounded up to whole pages.
    uint8_t* GetData() const { return mData; }
    size_t GetSize() const { return mSize; }

    // Takes the name away. Those who have the segment open keep it; the next one makes a new one. Nothing on
    // Windows. False when there is one that this process may not remove.
    static bool Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
    uint8_t* mData = nullptr;
    size_t mSize = 0;
};

// Raises GErrorCode::cSegmentHeader with the text that `what`, in which %1 stands for the segment's name,
// makes.
[[noreturn]] void RaiseSegmentError(const GString& what, const GString& name);
