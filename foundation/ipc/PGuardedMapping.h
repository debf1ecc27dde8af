#pragma once

#include <cstddef>
#include <cstdint>

// A file's bytes in memory, shared with everybody who maps the file.
//
// Where somebody cuts the file short, or its file system loses a page of it, the first touch of what is gone
// is a signal that ends the process, and with it the host that the plug-in runs in. Here the process goes on:
// all of the mapping becomes zeros of its own, and IsLost tells so from then on. The signal's handler is set
// when the first mapping is made, hands on whatever it does not know, and goes with the last mapping. Where
// somebody has set another one on top, who may call this one or put it back, it stays, and so does the module
// that it is in.
//
// Any thread may touch the memory; each looks at IsLost afterwards before it believes what it did there.
class PGuardedMapping
{
public:
    // Maps the first bytes of a file for reading and writing. Not mapped, with errno set, when that fails.
    PGuardedMapping(int file, size_t size) noexcept;

    // Gives the memory back, unless it was lost: the system may still hold a lock in it for a thread.
    ~PGuardedMapping();
    PGuardedMapping(const PGuardedMapping&) = delete;
    PGuardedMapping& operator=(const PGuardedMapping&) = delete;

    bool IsMapped() const noexcept { return mPlace != nullptr; }
    uint8_t* GetData() const noexcept;
    bool IsLost() const noexcept;

    struct Place;  // what the signal's handler knows of a mapping

private:
    Place* mPlace;
};
