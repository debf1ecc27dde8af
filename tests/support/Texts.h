#pragma once

#include <QStringList>

// A text in UTF-8, without a byte order mark at its start.
inline QString operator""_q(const char* text, size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}

// A list of texts with '|' between them.
inline QStringList operator""_list(const char* text, size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size)).split(QLatin1Char('|'));
}
