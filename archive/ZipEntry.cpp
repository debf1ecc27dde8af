#include "archive/ZipEntry.h"

namespace Morvane
{
static constexpr uint16_t cFlagEncrypted = 0x0001;
static constexpr uint32_t cDosReadOnly = 0x01;
static constexpr uint32_t cDosFolder = 0x10;
static constexpr int cMadeByUnix = 3;
static constexpr int cMadeByDarwin = 19;
static constexpr uint32_t cTypeMask = 0170000;
static constexpr uint32_t cTypeLink = 0120000;
static constexpr int cRightsMask = 0777;
static constexpr int cOwnerWrites = 0200;
static constexpr int cFirstYear = 1980;
static constexpr int cLastYear = 2107;

static bool isMadeByUnix(const ZipEntry& entry)
{
    const int system = entry.madeBy >> 8;
    return system == cMadeByUnix || system == cMadeByDarwin;
}

bool ZipEntry::isFolder() const
{
    return name.endsWith(QLatin1Char('/')) || (attributes & cDosFolder) != 0;
}

bool ZipEntry::isEncrypted() const
{
    return (flags & cFlagEncrypted) != 0;
}

bool ZipEntry::isLink() const
{
    return isMadeByUnix(*this) && ((attributes >> 16) & cTypeMask) == cTypeLink;
}

bool ZipEntry::isReadOnly() const
{
    const int mode = getMode();
    return mode != 0 ? (mode & cOwnerWrites) == 0 : (attributes & cDosReadOnly) != 0;
}

int ZipEntry::getMode() const
{
    return isMadeByUnix(*this) ? static_cast<int>(attributes >> 16) & cRightsMask : 0;
}

QDateTime ZipEntry::getModified() const
{
    const int day = dosTime >> 16 & 0x1f;
    const int month = dosTime >> 21 & 0x0f;
    const int year = static_cast<int>(dosTime >> 25) + cFirstYear;
    const int second = static_cast<int>(dosTime & 0x1f) * 2;
    const int minute = dosTime >> 5 & 0x3f;
    const int hour = dosTime >> 11 & 0x1f;
    const QDate date(year, month, day);
    const QTime time(hour, minute, second);
    return date.isValid() && time.isValid() ? QDateTime(date, time) : QDateTime();
}

uint32_t makeDosTime(const QDateTime& moment)
{
    const QDateTime local = moment.toLocalTime();
    QDate date = local.date();
    QTime time = local.time();
    if (date.year() < cFirstYear) {
        date = QDate(cFirstYear, 1, 1);
        time = QTime(0, 0);
    } else if (date.year() > cLastYear) {
        date = QDate(cLastYear, 12, 31);
        time = QTime(23, 59, 58);
    }
    return static_cast<uint32_t>((date.year() - cFirstYear) << 25 | date.month() << 21 | date.day() << 16 |
                                 time.hour() << 11 | time.minute() << 5 | time.second() / 2);
}
}  // namespace Morvane
