#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

// Sessions: the processes that share their named objects (segments, mutexes). On Windows a terminal-services
// session; on POSIX a user: all processes of the user see the same named objects, however they were started.
// So there the session's number is the user's. Any thread.
class GSessionInfo
{
public:
    static constexpr uint32_t cUnknown = 0xFFFFFFFF;

    static uint32_t GetOwnSessionID();

    // The session of a process; cUnknown when there is no such process or the system does not tell.
    static uint32_t GetSessionID(uint32_t processID);

    // The beginning of the name of every named object that this system makes in its own session.
    //
    // Windows: "Local\Morvane_"; with MORVANE_ROOT set, a text made from the root is put before the
    // underscore, so that two roots never use the same name. POSIX: the path of a folder and "Morvane_1000_",
    // with the user's number; the folder is the first of GetObjectNamePrefixes.
    static GString GetObjectNamePrefix() { return GetObjectNamePrefixes().front(); }

    // Every place where processes of the session may have made their objects, the best first. On POSIX, if
    // MORVANE_ROOT is set, that is only "Channel_1000" below it. Otherwise it is /run/user/1000, if that
    // exists and only the user can use it, and /dev/shm, which all users share. Never empty.
    static std::vector<GString> GetObjectNamePrefixes();

    // The prefix for objects that all sessions of the machine see: "Global\Morvane_". On POSIX it equals
    // GetObjectNamePrefix, because no user opens another user's objects.
    static GString GetGlobalObjectNamePrefix();
};
