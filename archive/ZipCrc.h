#pragma once

#include <QtGlobal>

#include <cstdint>

class QIODevice;

namespace Morvane
{
// Reads an open device from where it stands to its end, and gives the CRC-32 and the number of its bytes.
// False when it can't be read.
bool getFileCrc(QIODevice& device, uint32_t& crc, qint64& size);
}  // namespace Morvane
