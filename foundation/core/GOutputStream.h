#pragma once

#include "foundation/core/GString.h"

// Takes bytes one after the other. Not for several threads at once.
class GOutputStream
{
public:
    GOutputStream() = default;
    virtual ~GOutputStream() = default;
    GOutputStream(const GOutputStream&) = delete;
    GOutputStream& operator=(const GOutputStream&) = delete;

    // Writes all the bytes, or raises a GCustomException with GErrorCode::cFile.
    virtual void Write(const char* bytes, int count) = 0;

    void WriteBuffer(const GBuffer& bytes) { Write(bytes.constData(), bytes.size()); }
};
