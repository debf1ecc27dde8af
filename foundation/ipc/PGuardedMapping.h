#pragma once

#include <cstddef>
#include <cstdint>

// A file's bytes in memory, shared with everybody who maps the file.
//
// If somebody makes the file smaller, or its file system loses a page of it, the first touch of the missing
// part causes a signal that ends the process, and with it the host in which the plug-in runs. With this class
// the process goes on: all of the mapping becomes zeros that only this process sees, and IsLost is true from
// then on. The signal handler is set when the first mapping is made, passes on all signals that are not for
// it, and is removed with the last mapping. If somebody has set another handler after it, which may call this
// one or restore it, this handler stays, and its module stays too.
//
// Any thread may use the memory, but must check IsLost afterwards before it relies on the result.
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

    struct Place;  // what the signal handler knows about a mapping

private:
    Place* mPlace;
};
