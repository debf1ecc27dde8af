#pragma once

#include "foundation/core/GException.h"
#include "foundation/core/GString.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

// The object with this shared name is damaged: too small, too large, or with a header that is not valid.
// Every process that opens it finds the same. To solve this, remove it and make a new one.
class GDamagedObject : public GCustomException
{
public:
    using GCustomException::GCustomException;
};

// A named piece of memory that processes of one user share. It is made for its owner only; a segment of the
// same name that belongs to another user, or that others may open, is refused.
//
// A name comes from GSessionInfo's prefixes; on POSIX it is the path of a file, which stays until it is
// removed. On Windows a segment disappears with the last process that has it open. Other processes have
// written its content: read each number once, and check it before you use it.
class GSharedSegment
{
public:
    enum class Mode
    {
        Open,          // it has to be there
        OpenOrCreate,  // a new one is filled with zeros
        CreateNew      // one that an earlier process left is removed first (Windows: taken over as it is)
    };

    // Called with the memory before the constructor returns, and never by two processes at the same time for
    // one segment. Here a segment that is still all zero gets its first content. The identity is a number
    // that is different in a copy of the segment, and in another segment of the same name; 0 on Windows.
    using Prepare = std::function<void(uint8_t* data, uint64_t identity)>;

    // `size` is the size that is needed. A new segment gets this size; an existing one is refused if it is
    // smaller or, on POSIX, larger than 64 MiB. All of the memory is requested from the system here, so that
    // it is safe to use later. If the folder in the name is missing, it is made, for the owner only.
    //
    // Raises with GErrorCode::cSegmentHeader when the segment is not available: a GDamagedObject for the
    // wrong size; otherwise an error whose text says why, and who owns the segment if that is another user.
    // If there is no space for a new segment, no name is left.
    GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare = {});
    ~GSharedSegment();
    GSharedSegment(const GSharedSegment&) = delete;
    GSharedSegment& operator=(const GSharedSegment&) = delete;

    // The memory, which begins at the start of a page, and its size: on Windows rounded up to whole pages.
    uint8_t* GetData() const { return mData; }
    size_t GetSize() const { return mSize; }

    // Whether all of the memory is still there. If somebody has made the segment smaller, other processes do
    // not see changes in it any more. Never raises: false if the system does not tell. Always true on
    // Windows.
    bool IsIntact() const;

    // Whether memory was touched after it had disappeared: from then on there are only zeros, which only this
    // process sees. Makes no system call; never true on Windows.
    bool IsLost() const;

    // Whether it is intact and others find this same segment under its name. Always true on Windows.
    bool IsCurrent() const;

    // False when nothing has the name; true when something does, or when that can't be found out.
    static bool IsThere(const GString& name);

    // Whether a segment keeps its content when the last process that has it open has ended. False on Windows.
    static bool OutlivesItsUsers();

    // For all objects whose names begin with `begin`, the rest of the name. Empty on Windows.
    static std::vector<GString> ListRests(const GString& begin);

    // Removes the name. Processes that have the segment open keep it, and the next process makes a new one.
    // Does nothing on Windows. False when there is a segment that this process may not remove.
    [[nodiscard]] static bool Remove(const GString& name);

private:
    struct Handle;

    std::unique_ptr<Handle> mHandle;
    uint8_t* mData = nullptr;
    size_t mSize = 0;
};

// Raise GErrorCode::cSegmentHeader with the text `what`, in which %1 is replaced by the segment's name; the
// second raises a GDamagedObject.
[[noreturn]] void RaiseSegmentError(const GString& what, const GString& name);
[[noreturn]] void RaiseSegmentDamage(const GString& what, const GString& name);
