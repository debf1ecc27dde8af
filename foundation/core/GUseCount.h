#pragma once

// Counts the users of a service that exists once: the first use starts it; when the last use is given back,
// it is ended. For one thread.
class GUseCount
{
public:
    // If starting raises, what was started is ended, the use is not counted and the exception is passed on.
    template <class BringUp, class TakeDown>
    void Add(BringUp bringUp, TakeDown takeDown)
    {
        if (mCount == 0) {
            try {
                bringUp();
            } catch (...) {
                takeDown();
                throw;
            }
        }
        ++mCount;
    }

    // False, without doing anything, when there is no use to give back.
    template <class TakeDown>
    [[nodiscard]] bool Remove(TakeDown takeDown)
    {
        if (mCount == 0)
            return false;
        if (--mCount == 0)
            takeDown();
        return true;
    }

    bool IsUsed() const { return mCount > 0; }

private:
    int mCount = 0;
};
