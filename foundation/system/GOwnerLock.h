#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

// The calls of the operating system behind GOwnedFile. If a call fails, GetLastSystemError has the reason.
namespace GOwnerLock
{
enum class State
{
    cLocked,
    cHeld,    // another handle holds the lock
    cUnknown  // the system can't lock this file
};

// Makes a file, for its owner only. The handle is not open when that fails, for example because anything has
// the name.
PFileHandle OpenNew(const GPathName& path) noexcept;

// Opens an existing file, never a link or anything else that is not a file.
PFileHandle OpenOld(const GPathName& path) noexcept;

State TryLock(const PFileHandle& file) noexcept;
void Unlock(const PFileHandle& file) noexcept;

enum class Naming
{
    cSame,     // the path names the open file
    cOther,    // it names another one, or nothing any more
    cUnknown,  // the system could not look
};
Naming LookAtName(const PFileHandle& file, const GPathName& path) noexcept;
}  // namespace GOwnerLock
