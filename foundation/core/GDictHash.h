#pragma once

#include "foundation/core/GString.h"
#include "foundation/core/GWideMultiply.h"

#include <QtEndian>

#include <cstddef>
#include <cstdint>

// The hash of a dictionary's keys. It decides the order of entries in written files, so it is fixed: the same
// content gives the same number in every process, on every machine, in every version. It is not secret:
// somebody who invents keys can give many of them the same home slot; see GDict for what that costs.
//
// A text is hashed as n bytes: the bytes of a GBuffer, or the UTF-16 units of a GString, each with its low
// byte first. Numbers of several bytes are read with the low byte first, and
//   fold(a, b) = the exclusive-or of the high 64 bits of the product a * b, its low 64 bits, a and b
//                (without a and b, a factor of 0 would give 0 whatever the other is)
//   K = 0x9E3779B97F4A7C15, L = 0xD6E8FEB86659FD93
// The hash begins as h = n * K, cut to 64 bits. From the front, while more than 16 bytes are left, the next 8
// are a and the 8 after them b, and h becomes fold(h ^ a, L ^ b). The last step is the same once more, with a
// and b from the end of the text:
//   n >= 16        the last 16 bytes, taken before or not: a their first 8, b their last 8
//   8 <= n < 16    a the first 8 bytes, b the last 8
//   4 <= n < 8     a the first 4 bytes, b the last 4
//   1 <= n < 4     a the number of the three bytes at 0, n / 2 and n - 1, b 0
//   n = 0          a and b 0
// The result is the exclusive-or of h's high and low 32 bits.
//
// The hash of a number is the number itself: codes that follow each other are in neighbouring slots.
//
// For a key type of your own, write a GDictHash beside it, in its namespace.
inline uint32_t GDictHash(const GBuffer& key);
inline uint32_t GDictHash(const GString& key);

inline uint32_t GDictHash(uint32_t key)
{
    return key;
}

// Inline as a whole: most keys are short, and a call would cost as much as the hash.
namespace GDictHashing
{
constexpr uint64_t cLengthFactor = 0x9E3779B97F4A7C15;
constexpr uint64_t cSecondFactor = 0xD6E8FEB86659FD93;

inline uint64_t Fold(uint64_t first, uint64_t second)
{
    const GWideProduct product = GMultiplyWide(first, second);
    return product.mHigh ^ product.mLow ^ first ^ second;
}

template <typename Number>
uint64_t Read(const uchar* bytes)
{
    return qFromLittleEndian<Number>(bytes);
}

inline uint32_t HashBytes(const void* data, size_t total)
{
    auto bytes = static_cast<const uchar*>(data);
    uint64_t hash = total * cLengthFactor;
    uint64_t first = 0;
    uint64_t second = 0;
    if (total >= 16) {
        const uchar* const last = bytes + total - 16;
        for (; bytes < last; bytes += 16)
            hash = Fold(hash ^ Read<quint64>(bytes), cSecondFactor ^ Read<quint64>(bytes + 8));
        first = Read<quint64>(last);
        second = Read<quint64>(last + 8);
    } else if (total >= 8) {
        first = Read<quint64>(bytes);
        second = Read<quint64>(bytes + total - 8);
    } else if (total >= 4) {
        first = Read<quint32>(bytes);
        second = Read<quint32>(bytes + total - 4);
    } else if (total != 0) {
        first = uint64_t(bytes[0]) | uint64_t(bytes[total / 2]) << 8 | uint64_t(bytes[total - 1]) << 16;
    }
    hash = Fold(hash ^ first, cSecondFactor ^ second);
    return static_cast<uint32_t>(hash >> 32) ^ static_cast<uint32_t>(hash);
}
}  // namespace GDictHashing

inline uint32_t GDictHash(const GBuffer& key)
{
    return GDictHashing::HashBytes(key.constData(), static_cast<size_t>(key.size()));
}

inline uint32_t GDictHash(const GString& key)
{
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "UTF-16 units are hashed as they lie in memory");
    return GDictHashing::HashBytes(key.constData(), static_cast<size_t>(key.size()) * 2);
}
