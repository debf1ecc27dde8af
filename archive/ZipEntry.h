#pragma once

#include <QDateTime>
#include <QString>

namespace Morvane
{
// One entry of an archive, as its directory describes it. Nothing of it is to be trusted.
struct ZipEntry
{
    // The decoded name, with '/' between its parts on every system. Empty when the archive gives none.
    QString name;

    qint64 size = 0;        // bytes once extracted
    qint64 packedSize = 0;  // bytes in the archive
    uint32_t crc = 0;       // CRC-32 of the extracted bytes
    uint16_t flags = 0;
    uint16_t method = 0;      // 0 stored, 8 deflated; nothing else can be extracted
    uint16_t madeBy = 0;      // high byte: the system whose attributes these are
    uint32_t attributes = 0;  // low byte: those of DOS; on systems like Unix the file mode in the high half
    uint32_t dosTime = 0;     // date in the high half, time in the low one

    // By a name that ends in a separator, or by the attribute.
    bool isFolder() const;

    bool isEncrypted() const;
    bool isLink() const;

    // When the file was changed, in local time and steps of two seconds; invalid when the archive has no
    // date.
    QDateTime getModified() const;

    // Whether nobody is to write the file.
    bool isReadOnly() const;

    // The rights that the entry asks for, as the nine bits of a file mode; 0 where it comes from a system
    // whose attributes tell nothing of the kind.
    int getMode() const;
};

// The date and time of an entry for a moment. Years before 1980 and after 2107 have no form and become the
// first or last moment that has one.
uint32_t makeDosTime(const QDateTime& moment);
}  // namespace Morvane
