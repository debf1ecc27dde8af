#pragma once

// Ends the process when an export does not end by itself: it is given the export's own time and a grace, and
// the process then says so and exits with status 1, wherever it hangs. One at a time.
class LastResort
{
public:
    static constexpr int cGrace = 30;  // seconds

    explicit LastResort(int seconds);
    ~LastResort();
    LastResort(const LastResort&) = delete;
    LastResort& operator=(const LastResort&) = delete;
};
