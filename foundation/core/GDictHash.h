#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// The hash of a dictionary's keys. It decides the order of entries in written files, so it is fixed: the same
// content gives the same number in every process, on every machine, in every version. It is not secret, so
// whoever makes up the keys can make them meet; see GDict for what that costs.
//
// Text hashes as a row of bytes: a GBuffer's own, a GString's UTF-16 units each with its low byte first. With
//   fold(a, b) = the high 64 bits of the product a * b, exclusive-or its low 64 bits
//   K = 0x9E3779B97F4A7C15
// the number of n bytes is made so:
//   h = n * K, cut to 64 bits
//   for each 8 bytes from the front, w = these as a little-endian number:       h = fold(h ^ w, K)
//   for the 1 to 7 bytes that may be left, w = these as a little-endian number: h = fold(h ^ w, K)
//   the hash is the exclusive-or of h's high and low 32 bits.
//
// A number hashes to the middle 32 bits of its 64-bit product with K: codes that follow each other are spread
// evenly, whatever the capacity.
//
// A key type of one's own gets a GDictHash beside it, in its namespace.
uint32_t GDictHash(const GBuffer& key);
uint32_t GDictHash(const GString& key);

inline uint32_t GDictHash(uint32_t key)
{
    return static_cast<uint32_t>((key * 0x9E3779B97F4A7C15) >> 16);
}
