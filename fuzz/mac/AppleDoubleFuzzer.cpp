#include "archive/mac/AppleDouble.h"

#include <QBuffer>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    Morvane::MacFileInfo info;
    const bool isRead = Morvane::AppleDouble::getMacFileType(&file, &info);
    if ((!isRead && !info.type.isEmpty()) || info.finderInfo.size() > bytes.size())
        std::abort();
    return 0;
}
