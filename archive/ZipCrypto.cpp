#include "archive/ZipCrypto.h"

#include <zlib.h>

namespace Morvane
{
namespace
{
// The three keys of the cipher, started from the password.
class Keys
{
public:
    explicit Keys(const QByteArray& password)
    {
        for (const char character : password)
            update(static_cast<uint8_t>(character));
    }

    uint8_t decrypt(uint8_t byte)
    {
        const uint32_t mask = (mSecond & 0xffff) | 2;
        const uint8_t plain = static_cast<uint8_t>(byte ^ (mask * (mask ^ 1) >> 8));
        update(plain);
        return plain;
    }

private:
    void update(uint8_t byte)
    {
        mZeroth = advance(mZeroth, byte);
        mFirst = (mFirst + (mZeroth & 0xff)) * 134775813u + 1;
        mSecond = advance(mSecond, static_cast<uint8_t>(mFirst >> 24));
    }

    static uint32_t advance(uint32_t crc, uint8_t byte)
    {
        return static_cast<uint32_t>(get_crc_table()[(crc ^ byte) & 0xff]) ^ crc >> 8;
    }

    uint32_t mZeroth = 0x12345678;
    uint32_t mFirst = 0x23456789;
    uint32_t mSecond = 0x34567890;
};
}  // namespace

uint8_t ZipCrypto::decryptCheckByte(const char* header, const QByteArray& password)
{
    Keys keys(password);
    uint8_t byte = 0;
    for (int index = 0; index < cHeaderSize; ++index)
        byte = keys.decrypt(static_cast<uint8_t>(header[index]));
    return byte;
}
}  // namespace Morvane
