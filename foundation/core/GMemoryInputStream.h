#pragma once

#include "foundation/core/GInputStream.h"
#include "foundation/core/GString.h"

// Reads bytes that are in memory.
class GMemoryInputStream : public GInputStream
{
public:
    // Shares the bytes. Memory given to GBuffer::fromRawData must outlive the stream and its clones.
    explicit GMemoryInputStream(const GBuffer& bytes);

    // Reads the units of a text in this machine's order (GEncoding::GetUTF16). The text must stay unchanged
    // while the stream or a clone of it exists.
    static std::unique_ptr<GMemoryInputStream> CreateOnText(const GString& text);

    int Read(char* bytes, int count) override;
    void Reset() override;
    std::unique_ptr<GInputStream> CreateClone() const override;

private:
    GBuffer mBytes;
    int mPosition = 0;
};
