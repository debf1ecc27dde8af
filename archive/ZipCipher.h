#pragma once

#include <QByteArray>

#include <cstdint>

namespace Morvane
{
// The traditional zip cipher, for reading. The zip library has one, too, but that one takes a fifth longer
// and accepts any password.
class ZipCipher
{
public:
    // An encrypted entry's content begins with a header of this many bytes. Its last byte is the check byte.
    // With the right password it is the highest byte of the content's CRC-32, or of the entry's time if the
    // CRC was not known when the entry was begun.
    static constexpr int cHeaderSize = 12;

    explicit ZipCipher(const QByteArray& password);

    // Decrypts bytes in place. The bytes must come in the order in which they are in the archive.
    void decrypt(char* bytes, int size);

private:
    uint32_t mZeroth = 0x12345678;
    uint32_t mFirst = 0x23456789;
    uint32_t mSecond = 0x34567890;
};
}  // namespace Morvane
