#pragma once

#include <atomic>

// Tells whether somebody wants this process to end: SIGTERM, SIGINT or SIGHUP; on Windows Ctrl-C, Ctrl-Break,
// or the end of the console, the log-on or the machine. From its construction on these no longer end the
// process by themselves, so that whoever looks at it can leave in good order. On POSIX a reader of the output
// that goes away does not end the process either: the writing fails instead. One per process.
class StopRequest
{
public:
    // How long, in milliseconds, the process has to end once Windows closes the console.
    static constexpr unsigned cGrace = 4000;

    StopRequest();
    StopRequest(const StopRequest&) = delete;
    StopRequest& operator=(const StopRequest&) = delete;

    static bool IsMade() { return sIsMade; }

private:
    static std::atomic<bool> sIsMade;
    static_assert(std::atomic<bool>::is_always_lock_free, "it is set in a signal handler");
};
