#pragma once

#include <QtGlobal>

#include <cstdint>
#include <functional>

namespace Morvane
{
class ZipSource;

// Reads an open source from where it stands to its end, and gives the CRC-32 and the number of its bytes.
// False when it can't be read. `goesOn`, where there is one, ends it early by giving false.
[[nodiscard]] bool getFileCrc(ZipSource& source, uint32_t& crc, qint64& size,
                              const std::function<bool()>& goesOn = {});
}  // namespace Morvane
