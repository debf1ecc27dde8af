#pragma once

#include "foundation/core/GOutputStream.h"

// Collects what is written in memory.
class GMemoryOutputStream : public GOutputStream
{
public:
    void Write(const char* bytes, int count) override;

    const GBuffer& GetData() const { return mData; }

private:
    GBuffer mData;
};
