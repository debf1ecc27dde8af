#include "foundation/core/SharedFile.h"

GString GetTooLargeReason(int64_t size, int64_t largest)
{
    return QStringLiteral("it has %1 bytes, and more than %2 are not read").arg(size).arg(largest);
}
