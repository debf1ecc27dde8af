#include "foundation/core/GDeviceOutputStream.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <QIODevice>

GDeviceOutputStream::GDeviceOutputStream(QIODevice& device) : mDevice(device) {}

void GDeviceOutputStream::Write(const char* bytes, int count)
{
    if (mDevice.write(bytes, count) != count)
        throw GCustomException(GErrorCode::cFile,
                               QStringLiteral("Could not be written: %1").arg(mDevice.errorString()));
}
