#pragma once

#include <QByteArray>

#include <cstdint>

namespace Morvane
{
// The part of the traditional zip encryption that the zip library leaves out.
namespace ZipCrypto
{
// An encrypted entry's content begins with this many bytes of its own; the last is the check byte.
constexpr int cHeaderSize = 12;

// Decrypts the check byte. With the right password it is the highest byte of the content's CRC-32, or of the
// entry's time where the CRC was not known when the entry was begun.
uint8_t decryptCheckByte(const char* header, const QByteArray& password);
}  // namespace ZipCrypto
}  // namespace Morvane
