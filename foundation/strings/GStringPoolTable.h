#pragma once

#include "foundation/core/GDict.h"
#include "foundation/core/GEncoding.h"

// The texts of one language, by code. Used by one thread.
class GStringPoolTable
{
public:
    struct Entry
    {
        GString text;
        GEncodingRef encoding;  // in which the text came in
    };

    // Sets the text of a code; replaces an old text.
    void SetString(uint32_t code, const GString& text, const GEncodingRef& encoding);

    // Sets the text of a code that has none; an existing text stays.
    void SetDefaultString(uint32_t code, const GString& text, const GEncodingRef& encoding);

    // The text of a code, null when there is none; valid until the next change of the table.
    const GString* FindStringForID(uint32_t code) const
    {
        // Most codes that a table does not have are outside its range, because they belong to another module.
        if (code - mLowest > mHighest - mLowest)
            return nullptr;
        const Entry* entry = mEntries.Find(code);
        return entry == nullptr ? nullptr : &entry->text;
    }

    const GDict<uint32_t, Entry>& GetAllStrings() const { return mEntries; }

private:
    GDict<uint32_t, Entry> mEntries;
    uint32_t mLowest = 0;  // the range of the codes; only the code 0 while the table is empty
    uint32_t mHighest = 0;
};
