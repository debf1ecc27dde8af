#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

class QDateTime;

// A moment in UTC, exact to the millisecond, in the years 1 to 9999 of the Gregorian calendar; or no moment.
class GDateTime
{
public:
    // No moment.
    GDateTime() = default;

    // Milliseconds since the beginning of 1970 in UTC; no moment if that is outside the years 1 to 9999.
    static GDateTime FromMilliseconds(int64_t milliseconds);

    // From a moment in any time zone; no moment if it is invalid or outside those years.
    static GDateTime FromQDateTime(const QDateTime& dateTime);

    // Reads what GetText writes. No moment for any other text.
    static GDateTime FromText(const GString& text);

    // "2026-11-21T08:45:12.345Z", the form in which settings files store it; empty for no moment.
    GString GetText() const;

    bool IsValid() const { return mMilliseconds != cNone; }

    // In UTC; invalid for no moment.
    QDateTime GetQDateTime() const;

    // "No moment" equals itself and is before every moment.
    bool operator==(const GDateTime& other) const { return mMilliseconds == other.mMilliseconds; }
    bool operator!=(const GDateTime& other) const { return mMilliseconds != other.mMilliseconds; }
    bool operator<(const GDateTime& other) const { return mMilliseconds < other.mMilliseconds; }

private:
    static constexpr int64_t cNone = INT64_MIN;

    int64_t mMilliseconds = cNone;
};
