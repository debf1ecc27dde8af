#include "foundation/core/SharedFile.h"

#include <QFile>

bool OpenSharedForReading(QFile& file, GString& reason)
{
    const bool isOpen = file.open(QIODevice::ReadOnly);
    if (!isOpen)
        reason = file.errorString();
    return isOpen;
}
