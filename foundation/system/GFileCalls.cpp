#include "foundation/system/GFileCalls.h"

#include <QFile>

bool GFileCalls::WriteAll(QFile& file, const char* bytes, qint64 count)
{
    while (count > 0) {
        const qint64 written = file.write(bytes, count);
        if (written <= 0)
            return false;
        bytes += written;
        count -= written;
    }
    return true;
}
