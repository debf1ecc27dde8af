#pragma once

#include "foundation/core/GString.h"

#include <cstdint>
#include <vector>

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

    // What begins the name of every named object of this system in the own session: where it is made.
    //
    // Windows: "Local\Morvane_"; with MORVANE_ROOT set, a text made of the root stands before the underscore,
    // so that two roots never meet. POSIX: the path of a folder and "Morvane_1000_", with the user's number;
    // the folder is the first of GetObjectNamePrefixes.
    static GString GetObjectNamePrefix() { return GetObjectNamePrefixes().front(); }

    // Every place where processes of the session may have made their objects, the best first. On POSIX that
    // is "Channel_1000" below MORVANE_ROOT alone where that is set; else /run/user/1000, where it is there
    // and the user's alone, and /dev/shm, which all users share. Never empty.
    static std::vector<GString> GetObjectNamePrefixes();

    // The prefix for what all sessions of the machine see: "Global\Morvane_". On POSIX it equals
    // GetObjectNamePrefix, as no user opens another's objects.
    static GString GetGlobalObjectNamePrefix();
};
