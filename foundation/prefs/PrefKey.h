#pragma once

#include "foundation/core/GBufferSupport.h"

// Keys of settings, which are bytes or text in memory, and text in a file.
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
}  // namespace PrefKey
