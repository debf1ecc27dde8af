#include "foundation/core/GDateTime.h"

#include <QDateTime>

namespace
{
constexpr int64_t cFirst = -62135596800000;  // 0001-01-01T00:00:00.000Z
constexpr int64_t cLast = 253402300799999;   // 9999-12-31T23:59:59.999Z

// Where the parts of the text form are: a date of 10 characters, 'T', a time of 12, 'Z'.
constexpr int cDateLength = 10;
constexpr int cTimeLength = 12;
constexpr int cTextLength = cDateLength + 1 + cTimeLength + 1;
}  // namespace

GDateTime GDateTime::FromMilliseconds(int64_t milliseconds)
{
    GDateTime result;
    if (milliseconds >= cFirst && milliseconds <= cLast)
        result.mMilliseconds = milliseconds;
    return result;
}

GDateTime GDateTime::FromQDateTime(const QDateTime& dateTime)
{
    return dateTime.isValid() ? FromMilliseconds(dateTime.toMSecsSinceEpoch()) : GDateTime();
}

GDateTime GDateTime::FromText(const GString& text)
{
    if (text.size() != cTextLength)
        return GDateTime();
    const QDate date = QDate::fromString(text.left(cDateLength), Qt::ISODate);
    const QTime time = QTime::fromString(text.mid(cDateLength + 1, cTimeLength), Qt::ISODateWithMs);
    if (!date.isValid() || !time.isValid())
        return GDateTime();
    const GDateTime result = FromQDateTime(QDateTime(date, time, Qt::UTC));
    // Qt reads more forms than this one, and would take their parts for something else.
    return result.GetText() == text ? result : GDateTime();
}

GString GDateTime::GetText() const
{
    return IsValid() ? GetQDateTime().toString(Qt::ISODateWithMs) : GString();
}

QDateTime GDateTime::GetQDateTime() const
{
    return IsValid() ? QDateTime::fromMSecsSinceEpoch(mMilliseconds, Qt::UTC) : QDateTime();
}
