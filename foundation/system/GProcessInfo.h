#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

// The running processes of this machine, as far as the system shows them to this process's user. Any thread.
class GProcessInfo
{
public:
    // The identifiers of all running processes with this image name, in ascending order. The image name is
    // the last name of the executable's path. On POSIX it is compared exactly, also when the file has been
    // replaced since; on Windows case does not count. Processes of other users that the system does not show
    // are left out. Raises a GCustomException with GErrorCode::cFile if the system gives no list, or not the
    // whole list.
    static std::vector<uint32_t> GetProcessIDs(const GString& imageName);

    static uint32_t GetOwnProcessID();

    // Whether the process runs. A process that has ended does not run, even if its parent has not yet waited
    // for it.
    static bool IsAlive(uint32_t processID);

    // A number that differs between two processes that have the same identifier one after the other, also
    // when the machine was restarted between them. It is the same at every call while the process runs, and 0
    // when it does not run or the system does not tell. Use it only to compare for equality.
    static uint64_t GetStartTime(uint32_t processID);

    // A number that differs after each start of the machine; 0 on Windows, and when the system does not tell.
    static uint64_t GetMachineStart();
};
