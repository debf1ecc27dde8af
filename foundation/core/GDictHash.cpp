#include "foundation/core/GDictHash.h"

#include <QtEndian>

namespace
{
__extension__ using uint128 = unsigned __int128;

constexpr uint64_t cLengthFactor = 0x9E3779B97F4A7C15;
constexpr uint64_t cSecondFactor = 0xD6E8FEB86659FD93;

uint64_t Fold(uint64_t first, uint64_t second)
{
    const uint128 product = static_cast<uint128>(first) * second;
    return static_cast<uint64_t>(product >> 64) ^ static_cast<uint64_t>(product) ^ first ^ second;
}

template <typename Number>
uint64_t Read(const uchar* bytes)
{
    return qFromLittleEndian<Number>(bytes);
}

uint32_t HashBytes(const uchar* bytes, size_t total)
{
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
