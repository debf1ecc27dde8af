#include "archive/ZipEntryPath.h"
#include "archive/ZipName.h"

#include <QDir>

#include <cstdlib>

// Reads the input as the raw name of an entry; where the name is taken for safe, it has to lie below the
// destination by the rules of paths alone, and its form in the code page has to be safe, too.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    using namespace Morvane;
    const QByteArray rawName(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QString name = ZipName::decodeZipName(rawName, QByteArray());
    const ZipEntryPath path(name);
    if (!path.isSafe())
        return 0;
    const QString root = QStringLiteral("/destination");
    const QString joined = QDir::cleanPath(root + QLatin1Char('/') + path.parts.join(QLatin1Char('/')));
    if (joined != root && !joined.startsWith(root + QLatin1Char('/')))
        std::abort();
    if (ZipName::encodeZipName(name).contains('\\'))
        std::abort();
    return 0;
}
