#pragma once

#include <atomic>

// Tells whether the user wants a long command to stop: Ctrl-C, or a request to end. While an object exists,
// the first such request no longer ends the process, so that the command can end in an orderly way; a second
// request ends it. One object per process.
class CliStop
{
public:
    CliStop();
    CliStop(const CliStop&) = delete;
    CliStop& operator=(const CliStop&) = delete;

    static bool IsAskedFor() { return sIsAskedFor; }

private:
    static std::atomic<bool> sIsAskedFor;
    static_assert(std::atomic<bool>::is_always_lock_free, "it is set in a signal handler");
};
