#include "foundation/strings/GStringPoolTable.h"

#include <algorithm>

void GStringPoolTable::SetString(uint32_t code, const GString& text, const GEncodingRef& encoding)
{
    const bool isFirst = mEntries.IsEmpty();
    mEntries.Insert(code, Entry{text, encoding});
    mLowest = isFirst ? code : std::min(mLowest, code);
    mHighest = isFirst ? code : std::max(mHighest, code);
}

void GStringPoolTable::SetDefaultString(uint32_t code, const GString& text, const GEncodingRef& encoding)
{
    if (!mEntries.Has(code))
        SetString(code, text, encoding);
}
