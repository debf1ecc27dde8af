#include "archive/ZipCrc.h"

#include <QIODevice>

#include <zlib.h>

namespace Morvane
{
static constexpr int cChunkSize = 4096;

bool getFileCrc(QIODevice& device, uint32_t& crc, qint64& size)
{
    char chunk[cChunkSize];
    uLong sum = 0;
    size = 0;
    qint64 count = 0;
    while ((count = device.read(chunk, sizeof chunk)) > 0) {
        sum = crc32(sum, reinterpret_cast<const Bytef*>(chunk), static_cast<uInt>(count));
        size += count;
    }
    crc = static_cast<uint32_t>(sum);
    return count == 0;
}
}  // namespace Morvane
