#pragma once

#include <chrono>
#include <ctime>

// The time on the system's steady clock at which a wait that begins now must end, in the form that the C
// library's calls take. With the wall clock, a wait would become longer whenever somebody sets the clock
// back.
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
