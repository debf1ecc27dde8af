#pragma once

#include "foundation/core/GWideMultiply.h"

#include <cstdint>
#include <limits>

// The number of slots of a dictionary, and the home slot of each hash. Two multiplications with a reciprocal,
// which is computed once per capacity, give the remainder: a division would cost more than the rest of a
// look-up.
class GDictCapacity
{
public:
    explicit GDictCapacity(int capacity)
        : mReciprocal(std::numeric_limits<uint64_t>::max() / static_cast<uint32_t>(capacity) + 1),
          mCapacity(static_cast<uint32_t>(capacity))
    {
    }

    uint32_t Get() const { return mCapacity; }

    // hash % capacity, exact for every 32-bit hash.
    uint32_t GetHomeSlot(uint32_t hash) const
    {
        const uint64_t fraction = mReciprocal * hash;
        return static_cast<uint32_t>(GMultiplyWide(fraction, mCapacity).mHigh);
    }

    // The slot after this one; after the last comes the first.
    uint32_t GetNextSlot(uint32_t slot) const { return slot + 1 == mCapacity ? 0 : slot + 1; }

private:
    uint64_t mReciprocal;
    uint32_t mCapacity;
};
