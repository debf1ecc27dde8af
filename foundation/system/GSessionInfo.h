#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// Sessions: the processes that share their named objects (segments, mutexes). On Windows a terminal-services
// session; on POSIX a user, whose processes see the same named objects however they were started, so that the
// session's number is the user's. Any thread.
class GSessionInfo
{
public:
    static constexpr uint32_t cUnknown = 0xFFFFFFFF;

    static uint32_t GetOwnSessionID();

    // The session of a process; cUnknown when there is no such process or the system does not tell.
    static uint32_t GetSessionID(uint32_t processID);

    // What begins the name of every named object of this system in the own session: "Local\Morvane" or
    // "/Morvane_1000" and an underscore. With MORVANE_ROOT set, a text made of the root is part of it, so
    // that two roots never meet.
    static GString GetObjectNamePrefix();

    // The same for what all sessions of the machine see: "Global\Morvane_". On POSIX it equals
    // GetObjectNamePrefix, as no user opens another's objects.
    static GString GetGlobalObjectNamePrefix();

private:
    static GString GetRootText();
};
