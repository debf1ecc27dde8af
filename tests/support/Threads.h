#pragma once

#include <thread>
#include <vector>

// Calls a function with 0, 1, 2, ... in as many threads at once; comes back when all have ended.
template <class Function>
void RunInThreads(int count, Function function)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < count; ++number)
        threads.emplace_back(function, number);
    for (std::thread& thread : threads)
        thread.join();
}
