#pragma once

#include "foundation/core/GString.h"

#include <memory>

class GEncoding;

using GEncodingRef = std::shared_ptr<const GEncoding>;

// A way to write Unicode text as bytes. The encodings are made on first use, never change, and may be used
// from any thread.
class GEncoding
{
public:
    // The order of the two bytes of a UTF-16 unit; cNone for the encodings whose unit is one byte.
    enum class ByteOrder
    {
        cNone,
        cLittleEndian,
        cBigEndian
    };

    virtual ~GEncoding() = default;
    GEncoding(const GEncoding&) = delete;
    GEncoding& operator=(const GEncoding&) = delete;

    // UTF-16 in the byte order of this machine, and in a fixed byte order.
    static GEncodingRef GetUTF16();
    static GEncodingRef GetUTF16LittleEndian();
    static GEncodingRef GetUTF16BigEndian();

    static GEncodingRef GetUTF8();

    // "WinAnsiEncoding", Windows code page 1252. The five bytes that the code page does not define decode to
    // the control characters with the same numbers. The control characters U+0080 to U+009F encode to the
    // bytes with the same numbers, even if those bytes decode to other characters. That keeps the bytes of a
    // name that is held as text (see GBufferSupport).
    static GEncodingRef GetWinAnsi();

    // The code page of file names in zip archives: the system's OEM code page on Windows, else code page 437.
    // No character is replaced by one that looks like it.
    static GEncodingRef GetOEM();

    // The encoding of this platform's 8-bit text: UTF-8, on Windows the ANSI code page.
    static GEncodingRef GetPlatform8Bit();

    // The encoding of a name as GetName gives it, without regard to case; "UTF-16", "OEM" and "Platform" find
    // the three that depend on the machine. Null when the name is unknown.
    static GEncodingRef FindByName(const GString& name);

    const GString& GetName() const { return mName; }

    // The number of bytes of one "A": 2 for UTF-16, 1 for all others.
    int GetCharWidth() const { return mByteOrder == ByteOrder::cNone ? 1 : 2; }

    ByteOrder GetByteOrder() const { return mByteOrder; }

    // The bytes of the text, without a byte order mark. A character that the encoding does not have becomes
    // one replacement character, even if it has two units.
    GBuffer Encode(const GString& text) const { return EncodeText(text, '?'); }
    GBuffer Encode(const GString& text, char replacement) const { return EncodeText(text, replacement); }

    // The text of the bytes; a byte order mark among them is a character like any other. What can't be
    // decoded becomes U+FFFD; the odd last byte of UTF-16 is dropped.
    virtual GString Decode(const GBuffer& bytes) const = 0;

protected:
    GEncoding(const GString& name, ByteOrder byteOrder) : mName(name), mByteOrder(byteOrder) {}

private:
    virtual GBuffer EncodeText(const GString& text, char replacement) const = 0;

    GString mName;
    ByteOrder mByteOrder;
};
