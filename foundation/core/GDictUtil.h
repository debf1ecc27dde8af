#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// What dictionaries and the files that hold them have in common.
namespace GDictUtil
{
// The capacity for `requested` slots: the smallest of the fixed primes that is at least `requested`. Above
// the last prime, it is the last prime doubled as often as needed. Raises std::length_error if the result
// does not fit into an int.
int GetAllocation(int64_t requested);

// Which characters end a line of a settings file: both, on every platform, so that the same content gives the
// same file everywhere.
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
