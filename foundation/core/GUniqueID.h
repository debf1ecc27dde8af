#pragma once

#include "foundation/core/GString.h"

// A number of 128 bits that no other call, process or machine will make again: the name of a record that two
// programs may add at the same moment. For any thread.
class GUniqueID
{
public:
    static GUniqueID Create();

    // 32 hexadecimal digits in capitals.
    GString GetHexText() const;

private:
    explicit GUniqueID(const GBuffer& bytes);

    GBuffer mBytes;  // always 16
};
