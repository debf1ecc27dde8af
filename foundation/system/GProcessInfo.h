#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

// The running processes of this machine, as far as the system shows them to this process's user. Any thread.
class GProcessInfo
{
public:
    // The identifiers of all running processes whose image has the name, in ascending order. The image name
    // is the last name of the executable's path: on POSIX compared exactly, also when the file has been
    // replaced since; on Windows without regard to case. Processes of other users that the system does not
    // show are left out. Raises a GCustomException with GErrorCode::cFile where the system gives no list, or
    // not all of it.
    static std::vector<uint32_t> GetProcessIDs(const GString& imageName);

    static uint32_t GetOwnProcessID();

    // Whether the process runs. One that has ended but that its parent has not taken note of does not.
    static bool IsAlive(uint32_t processID);

    // A number that differs between two processes that have the same identifier one after the other, also
    // when the machine was started anew between them. The same at every call while the process runs; 0 when
    // it does not, or the system does not tell. Only good to be compared for equality.
    static uint64_t GetStartTime(uint32_t processID);

    // A number that differs after each start of the machine; 0 on Windows, and when the system does not tell.
    static uint64_t GetMachineStart();
};
