#include "archive/ZipCipher.h"

#include <zlib.h>

namespace Morvane
{
static uint32_t advance(const z_crc_t* table, uint32_t crc, uint32_t byte)
{
    return static_cast<uint32_t>(table[(crc ^ byte) & 0xff]) ^ crc >> 8;
}

static void update(const z_crc_t* table, uint32_t& zeroth, uint32_t& first, uint32_t& second, uint8_t byte)
{
    zeroth = advance(table, zeroth, byte);
    first = (first + (zeroth & 0xff)) * 134775813u + 1;
    second = advance(table, second, first >> 24);
}

ZipCipher::ZipCipher(const QByteArray& password)
{
    for (const char character : password)
        update(get_crc_table(), mZeroth, mFirst, mSecond, static_cast<uint8_t>(character));
}

// The keys are in local variables while it runs, where the compiler keeps them out of memory.
void ZipCipher::decrypt(char* bytes, int size)
{
    const z_crc_t* const table = get_crc_table();
    uint32_t zeroth = mZeroth;
    uint32_t first = mFirst;
    uint32_t second = mSecond;
    for (int index = 0; index < size; ++index) {
        const uint32_t mask = (second & 0xffff) | 2;
        const uint8_t plain =
            static_cast<uint8_t>(static_cast<uint8_t>(bytes[index]) ^ (mask * (mask ^ 1) >> 8));
        bytes[index] = static_cast<char>(plain);
        update(table, zeroth, first, second, plain);
    }
    mZeroth = zeroth;
    mFirst = first;
    mSecond = second;
}
}  // namespace Morvane
