#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// What dictionaries and the files that hold them have in common.
namespace GDictUtil
{
// The capacity for `requested` slots: the smallest of the fixed primes that is not below it; beyond the last
// prime, the last one doubled as often as it takes. Raises std::length_error where that passes an int.
int GetAllocation(int64_t requested);

// Which characters end a line of a settings file. Both, on every platform: the same content is the same file
// wherever it was written.
constexpr bool NeedsCR()
{
    return true;
}
constexpr bool NeedsLF()
{
    return true;
}

// The end of a line: CR where it is needed, then LF where it is needed.
const GString& GetEOLString();
}  // namespace GDictUtil
