#include "archive/ZipSourceAttributes.h"

#include <QFile>
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
    struct stat status
    {
    };
    const bool isThere = ::stat(QFile::encodeName(source.filePath()).constData(), &status) == 0;
    return isThere ? static_cast<uint32_t>(status.st_mode & (S_IFMT | 0777)) << 16 : 0;
}
}  // namespace Morvane
