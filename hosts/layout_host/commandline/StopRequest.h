#pragma once

// Takes up that somebody wants the program to end: Ctrl-C, or SIGTERM. From the first object on, the process
// no longer dies of them. For the main thread.
class StopRequest
{
public:
    StopRequest();

    static bool IsMade();
};
