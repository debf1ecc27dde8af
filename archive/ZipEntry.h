#pragma once

#include <QDateTime>
#include <QString>

namespace Morvane
{
// One entry of an archive, as its directory describes it. None of these values can be trusted.
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

    // True if the name ends in a separator or the attribute says so.
    bool isFolder() const;

    bool isEncrypted() const;
    bool isLink() const;

    // When the file was changed, in local time and steps of two seconds; invalid when the archive has no
    // date.
    QDateTime getModified() const;

    // Whether nobody may write to the file.
    bool isReadOnly() const;

    // The rights that the entry asks for, as the nine bits of a file mode; 0 if it comes from a system whose
    // attributes do not have such rights.
    int getMode() const;
};

// A moment in the form of an entry's date and time. The form has no years before 1980 or after 2107: such
// moments become the first or the last one that is possible.
uint32_t makeDosTime(const QDateTime& moment);
}  // namespace Morvane
