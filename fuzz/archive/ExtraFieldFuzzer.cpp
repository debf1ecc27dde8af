#include "archive/ZipName.h"

#include <cstdlib>

// Looks for the name field in the input, and checks that a name which it finds survives being written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace Morvane;
    const QByteArray field(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QString name = ZipName::decodeZipName(QByteArray(), field);
    const bool isExact = QString::fromUtf8(name.toUtf8()) == name && !name.isEmpty();
    if (isExact && ZipName::parseExtraField(ZipName::createExtraField(name)) != name)
        std::abort();
    return 0;
}
