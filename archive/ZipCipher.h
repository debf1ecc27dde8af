#pragma once

#include <QByteArray>

#include <cstdint>

namespace Morvane
{
// The traditional zip cipher, for reading. The zip library has one, too: it takes a fifth longer, and
// believes any password.
class ZipCipher
{
public:
    // An encrypted entry's content begins with this many bytes of its own. The last is the check byte: with
    // the right password the highest byte of the content's CRC-32, or of the entry's time where the CRC was
    // not known when the entry was begun.
    static constexpr int cHeaderSize = 12;

    explicit ZipCipher(const QByteArray& password);

    // Decrypts bytes in their place, in the order in which they stand in the archive.
    void decrypt(char* bytes, int size);

private:
    uint32_t mZeroth = 0x12345678;
    uint32_t mFirst = 0x23456789;
    uint32_t mSecond = 0x34567890;
};
}  // namespace Morvane
