#include "foundation/core/GDictHash.h"

#include <QtEndian>

namespace
{
__extension__ using uint128 = unsigned __int128;

constexpr uint64_t cMultiplier = 0x9E3779B97F4A7C15;

uint64_t Fold(uint64_t value)
{
    const uint128 product = static_cast<uint128>(value) * cMultiplier;
    return static_cast<uint64_t>(product >> 64) ^ static_cast<uint64_t>(product);
}

template <typename Number>
uint64_t Read(const uchar* bytes)
{
    return qFromLittleEndian<Number>(bytes);
}

// The last `count` (1 to 7) bytes before `end` as a number. Overlapping reads within the `total` bytes of the
// text take the place of a loop over bytes.
uint64_t ReadRest(const uchar* end, size_t count, size_t total)
{
    if (total >= 8)
        return Read<quint64>(end - 8) >> (8 * (8 - count));
    const uchar* begin = end - count;
    if (count >= 4)
        return Read<quint32>(begin) | Read<quint32>(end - 4) << (8 * (count - 4));
    const size_t middle = count / 2;
    return uint64_t(begin[0]) | uint64_t(begin[middle]) << (8 * middle) |
           uint64_t(end[-1]) << (8 * (count - 1));
}

uint32_t HashBytes(const uchar* bytes, size_t total)
{
    uint64_t hash = total * cMultiplier;
    const uchar* const end = bytes + total;
    size_t left = total;
    for (; left >= 8; left -= 8, bytes += 8)
        hash = Fold(hash ^ Read<quint64>(bytes));
    if (left != 0)
        hash = Fold(hash ^ ReadRest(end, left, total));
    return static_cast<uint32_t>(hash >> 32) ^ static_cast<uint32_t>(hash);
}
}  // namespace

uint32_t GDictHash(const GBuffer& key)
{
    return HashBytes(reinterpret_cast<const uchar*>(key.constData()), static_cast<size_t>(key.size()));
}

uint32_t GDictHash(const GString& key)
{
    static_assert(Q_BYTE_ORDER == Q_LITTLE_ENDIAN, "UTF-16 units are hashed as they lie in memory");
    return HashBytes(reinterpret_cast<const uchar*>(key.constData()), static_cast<size_t>(key.size()) * 2);
}
