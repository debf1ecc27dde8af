#pragma once

#include <QtGlobal>

#include <cstdint>
#include <functional>

namespace Morvane
{
class ZipSource;

// Reads an open source from its current position to its end, and gives the CRC-32 and the number of the bytes
// read. False when it can't be read. If `goesOn` is given and gives false, the reading ends early.
[[nodiscard]] bool getFileCrc(ZipSource& source, uint32_t& crc, qint64& size,
                              const std::function<bool()>& goesOn = {});
}  // namespace Morvane
