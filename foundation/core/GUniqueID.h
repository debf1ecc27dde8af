#pragma once

#include "foundation/core/GString.h"

// A number of 128 bits that no other call, process or machine will make again: the name of a record that two
// programs may add at the same moment. For any thread.
class GUniqueID
{
public:
    // The null identifier: 128 zero bits. Create never gives it.
    GUniqueID();

    // A fresh one.
    static GUniqueID Create();

    // The identifier of a hexadecimal text in capitals, small letters or both; the null one where the text is
    // not exactly 32 hexadecimal digits.
    static GUniqueID FromHexText(const GString& text);

    // 32 hexadecimal digits in capitals.
    GString GetHexText() const;

    bool IsNull() const;
    bool operator==(const GUniqueID& other) const { return mBytes == other.mBytes; }
    bool operator!=(const GUniqueID& other) const { return mBytes != other.mBytes; }

private:
    explicit GUniqueID(const GBuffer& bytes);

    GBuffer mBytes;  // always 16
};
