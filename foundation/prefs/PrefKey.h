#pragma once

#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GDictHash.h"

#include <vector>

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

inline bool IsText(const GBuffer& key, const GString& text)
{
    return text == QLatin1String(key.constData(), key.size());
}

inline bool IsText(const GString& key, const GString& text)
{
    return key == text;
}

// Makes keys and remembers some, so that a key that many groups have takes its memory once.
template <typename Key>
class Pool
{
public:
    const Key& FromText(const GString& text)
    {
        if (mKeys.empty())
            mKeys.resize(cSize);
        Key& key = mKeys[GDictHash(text) % cSize];
        if (!IsText(key, text))
            key = PrefKey::FromText<Key>(text);
        return key;
    }

private:
    static constexpr size_t cSize = 2048;

    std::vector<Key> mKeys;  // each at the place that its text hashes to
};
}  // namespace PrefKey
