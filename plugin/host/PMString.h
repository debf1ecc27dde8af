#pragma once

#include "foundation/core/GString.h"

// A text of the host, as a copy. The adaptor makes the copy from whatever form the host keeps texts in, so
// the plug-in shares no memory with the host's texts.
//
// Host: the adaptor makes the host's string from UTF-16 with translation during the call switched off, then
// sets whether it may be translated. In the other direction it uses a pointer stream over a buffer of its own
// (StreamUtil::CreatePointerStreamWrite) and the string's ReadPlatformWriteUnicode.
class PMString
{
public:
    PMString() = default;
    explicit PMString(const GString& text) : mText(text) {}

    // A text that the host must show unchanged: a name, or a text that is translated already.
    static PMString Untranslated(const GString& text)
    {
        PMString string(text);
        string.SetTranslatable(false);
        return string;
    }

    // Whether the host may look the text up in its own translations. The default is that it may.
    void SetTranslatable(bool isTranslatable) { mIsTranslatable = isTranslatable; }
    bool IsTranslatable() const { return mIsTranslatable; }

    const GString& GetString() const { return mText; }
    bool IsEmpty() const { return mText.isEmpty(); }

    bool operator==(const PMString& other) const { return mText == other.mText; }
    bool operator!=(const PMString& other) const { return !(*this == other); }

private:
    GString mText;
    bool mIsTranslatable = true;
};
