#pragma once

// Counts the users of a service that exists once: the first use brings it up, the last one given back takes
// it down. For one thread.
class GUseCount
{
public:
    // Where bringing up raises, what it did is taken down, the use counts for nothing and the exception
    // comes through.
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

    // False, with nothing done, when there is no use to give back.
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
