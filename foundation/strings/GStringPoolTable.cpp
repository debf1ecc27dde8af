#include "foundation/strings/GStringPoolTable.h"

void GStringPoolTable::SetString(uint32_t code, const GString& text, const GEncodingRef& encoding)
{
    mEntries.Insert(code, Entry{text, encoding});
}

void GStringPoolTable::SetDefaultString(uint32_t code, const GString& text, const GEncodingRef& encoding)
{
    if (!mEntries.Has(code))
        SetString(code, text, encoding);
}
