#include "archive/ZipSourceAttributes.h"

namespace Morvane
{
uint16_t getMadeBy()
{
    return 0;
}

uint32_t getUnixAttributes(const QFileInfo&)
{
    return 0;
}
}  // namespace Morvane
