#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/core/GOutputStream.h"

#include <memory>

// Writes text in an encoding to another stream. Nothing is buffered: what was written is in the target.
class GText2BinStream : public GOutputStream
{
public:
    enum class ByteOrderMark
    {
        cWrite,
        cNone
    };

    // Writes to `target`, which outlives this stream or belongs to it. If the encoding is UTF-16, a byte
    // order mark is written first.
    GText2BinStream(GOutputStream& target, const GEncodingRef& encoding);
    GText2BinStream(std::unique_ptr<GOutputStream> target, const GEncodingRef& encoding);

    // Changes the encoding of what is written from now on. A requested mark is written at once: FF FE or FE
    // FF for UTF-16, by its byte order, nothing for any other encoding.
    void SetEncoding(const GEncodingRef& encoding, ByteOrderMark mark);

    // Writes text; characters that the encoding does not have become '?'. The second form is for ASCII that
    // ends with NUL.
    void Write(const GString& text);
    void Write(const char* text);

    // Writes bytes unchanged, without encoding them.
    void Write(const char* bytes, int count) override;

    void WriteEOL();

    // Writes the text escaped and between quotes (GStringSupport::QuoteString).
    void WriteQuotedString(const GString& text);

private:
    std::unique_ptr<GOutputStream> mOwned;
    GOutputStream& mTarget;
    GEncodingRef mEncoding;
    GBuffer mEOL;  // in the encoding
};
