#include "archive/ZipCrc.h"

#include "archive/ZipSource.h"

#include <zlib.h>

namespace Morvane
{
static constexpr int cChunkSize = 4096;

bool getFileCrc(ZipSource& source, uint32_t& crc, qint64& size, const std::function<bool()>& goesOn)
{
    char chunk[cChunkSize];
    uLong sum = 0;
    size = 0;
    int count = 0;
    while ((!goesOn || goesOn()) && (count = source.read(chunk, sizeof chunk)) > 0) {
        sum = crc32(sum, reinterpret_cast<const Bytef*>(chunk), static_cast<uInt>(count));
        size += count;
    }
    crc = static_cast<uint32_t>(sum);
    return count == 0;
}
}  // namespace Morvane
