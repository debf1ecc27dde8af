#include "archive/ZipSourceAttributes.h"

#include <QFileInfo>

#include <sys/stat.h>

namespace Morvane
{
static constexpr uint16_t cUnix = 3 << 8;

uint16_t getMadeBy()
{
    return cUnix;
}

uint32_t getUnixAttributes(const QFileInfo& source)
{
    const int permissions = source.permissions();
    const int rights = (permissions >> 6 & 0700) | (permissions >> 1 & 070) | (permissions & 07);
    const uint32_t mode = (source.isDir() ? S_IFDIR : S_IFREG) | static_cast<uint32_t>(rights);
    return mode << 16;
}
}  // namespace Morvane
