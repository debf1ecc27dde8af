#pragma once

#include <cstdint>

#if defined(_MSC_VER)
#include <intrin.h>
#endif

// The product of two 64-bit numbers, 128 bits wide. Standard C++ has no number of that width, and with four
// products of halves a dictionary's hash takes twice the time. So this file, and no other, asks the compiler
// for the processor's own instruction. All ways give the same numbers.
struct GWideProduct
{
    uint64_t mHigh;
    uint64_t mLow;
};

// Uses the four products of the halves; works on every processor.
inline GWideProduct GMultiplyByHalves(uint64_t first, uint64_t second)
{
    const uint64_t firstLow = first & 0xFFFFFFFF;
    const uint64_t secondLow = second & 0xFFFFFFFF;
    const uint64_t middle = (first >> 32) * secondLow + (firstLow * secondLow >> 32);
    const uint64_t otherMiddle = firstLow * (second >> 32) + (middle & 0xFFFFFFFF);
    return {(first >> 32) * (second >> 32) + (middle >> 32) + (otherMiddle >> 32), first * second};
}

inline GWideProduct GMultiplyWide(uint64_t first, uint64_t second)
{
#if defined(__GNUC__) && defined(__x86_64__)
    GWideProduct product = {};
    __asm__("mulq %3" : "=d"(product.mHigh), "=a"(product.mLow) : "%a"(first), "rm"(second) : "cc");
    return product;
#elif defined(_MSC_VER) && defined(_M_X64)
    GWideProduct product = {};
    product.mLow = _umul128(first, second, &product.mHigh);
    return product;
#else
    return GMultiplyByHalves(first, second);
#endif
}
