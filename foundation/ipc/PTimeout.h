#pragma once

#include <chrono>
#include <ctime>

// The point in time, on the system's steady clock, at which a wait that begins now has to end: the form that
// the C library's calls take. The wall clock would make a wait longer whenever somebody sets it back.
inline struct timespec GetDeadline(std::chrono::milliseconds timeout)
{
    using namespace std::chrono;
    const nanoseconds deadline = (steady_clock::now() + timeout).time_since_epoch();
    const seconds whole = duration_cast<seconds>(deadline);
    struct timespec time = {};
    time.tv_sec = static_cast<time_t>(whole.count());
    time.tv_nsec = static_cast<long>((deadline - whole).count());
    return time;
}
