#pragma once

#include "foundation/core/GBufferSupport.h"

#include <cstring>

// Keys of settings. They are bytes or text in memory, and text in a file.
namespace PrefKey
{
template <typename Key>
Key FromText(const GString& text);

template <>
inline GBuffer FromText<GBuffer>(const GString& text)
{
    return GBufferSupport::GetNameFromText(text);
}

template <>
inline GString FromText<GString>(const GString& text)
{
    return GString(text.constData(), text.size());  // a copy: the caller goes on using the text's memory
}

// Whether a key holds less than the text that it was made from, because some characters can't be bytes of a
// key.
inline bool IsLossy(const GString& text, const GBuffer& key)
{
    // memchr: every key that is read is checked here, and memchr is several times as fast as a byte array's
    // search.
    return std::memchr(key.constData(), '?', static_cast<size_t>(key.size())) != nullptr &&
           key.count('?') != text.count(QLatin1Char('?'));
}

inline bool IsLossy(const GString&, const GString&)
{
    return false;
}
}  // namespace PrefKey
