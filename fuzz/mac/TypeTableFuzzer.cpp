#include "archive/mac/PcExchange.h"

#include <QBuffer>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes = QByteArray::fromRawData(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QBuffer file(&bytes);
    file.open(QIODevice::ReadOnly);
    const Morvane::PcExchange table(&file);
    for (const Morvane::PcExchangeRecord& record : table.getAllEntries()) {
        QString extension;
        if (!table.findExtension(record.macType, record.macCreator, &extension))
            std::abort();
    }
    return 0;
}
