#pragma once

#include "foundation/core/GBufferedInputStream.h"
#include "foundation/core/GEncoding.h"
#include "foundation/prefs/CollectedText.h"

// Reads text from bytes: tokens, lines, quoted strings. Reads no more of the source than its buffer and the
// current text need.
//
// Sets of characters (SkipChars, ReadTillTerminator) consist of ASCII characters. Whitespace is blank, TAB,
// LF and CR. A single last byte of UTF-16 is not a character: the data ends before it. No text that is read
// becomes longer than cLongestText; for the reader the data ends there.
class GBin2TextStream : public GInputStream
{
public:
    static constexpr int cLongestText = 1 << 28;

    // Reads from `source`, which outlives this stream or belongs to it, in `encoding`; a byte order mark of
    // that encoding is skipped, and for UTF-16 it decides the byte order. With null the encoding is found: by
    // the mark of UTF-16 or UTF-8, or else it is the platform's 8-bit encoding.
    GBin2TextStream(GBufferedInputStream& source, const GEncodingRef& encoding);
    GBin2TextStream(std::unique_ptr<GBufferedInputStream> source, const GEncodingRef& encoding);

    // The encoding in which the data is read.
    const GEncodingRef& GetEncoding() const { return mEncoding; }

    // Skips blanks and TABs, and line ends too where asked for; gives the count skipped.
    int64_t SkipWhitespace(bool withLineEnds);

    int64_t SkipChars(const GString& set);

    // Skips all whitespace, then reads up to the next whitespace. False at the end of the data.
    [[nodiscard]] bool ReadString(GString& token);

    // Reads up to the end of the line and consumes that: LF, CR or CR LF. False at the end of the data.
    [[nodiscard]] bool ReadLine(GString& line);

    // Consumes what ReadLine would. False when that was more than blanks and TABs.
    [[nodiscard]] bool SkipLine();

    // Reads up to one of the terminators, which stays. False at the end of the data.
    [[nodiscard]] bool ReadTillTerminator(const GString& terminators, GString& text);

    // Reads a quoted string and replaces its escapes by what they mean; `\n` becomes CR LF, and a `\` that
    // begins no escape stays. False, with nothing consumed, when the next character is not a quote. Also
    // false when the data ends before the closing quote; `text` is then what was read.
    [[nodiscard]] bool ReadQuotedString(GString& text);

    // Reads up to `count` characters: UTF-16 units, or bytes of an 8-bit encoding, where a character of UTF-8
    // that begins within the count is read whole. Gives whether there were any.
    [[nodiscard]] bool Read(int count, GString& text);

    // Pushes text back: it is read next, before the rest.
    void Unread(const GString& text);

    void SetRollBackPoint();
    [[nodiscard]] bool RollBack();

    // The bytes as they are in the source, without decoding.
    int Read(char* bytes, int count) override;

    // Goes back to the first character; an encoding that was found is looked for again.
    void Reset() override;

    std::unique_ptr<GInputStream> CreateClone() const override;

    // The number of bytes of the source before the next character, including the byte order mark.
    int64_t GetPosition() const { return mSource.GetPosition(); }

    // Whether any text that was read had bytes that are not a character in the encoding. Such bytes can't be
    // written back unchanged.
    bool HasLostBytes() const { return mHasLostBytes; }

private:
    enum class Layout
    {
        cBytes,
        cLittleEndian,
        cBigEndian
    };

    // A clone of the other over a clone of its source.
    GBin2TextStream(const GBin2TextStream& other, std::unique_ptr<GBufferedInputStream> source);

    void InitializeEncoding();
    [[nodiscard]] bool SkipBytes(const GBuffer& bytes);
    void SetEncoding(const GEncodingRef& encoding);

    template <typename Operation>
    auto WithUnits(Operation operation);
    template <typename Units>
    bool HasUnit();
    template <typename Units, typename IsEnd>
    [[nodiscard]] bool CollectTill(IsEnd isEnd);
    template <typename Units, typename IsEnd>
    [[nodiscard]] bool Collect(GString& text, IsEnd isEnd);
    template <typename Units, typename IsSkipped>
    int64_t Skip(IsSkipped isSkipped);
    template <typename Units>
    void SkipLineEnd();
    template <typename Units>
    [[nodiscard]] bool ReadQuotedUnits(GString& text);
    template <typename Units>
    void CollectEscape();
    template <typename Units>
    void TakeCollected(GString& text);

    std::unique_ptr<GBufferedInputStream> mOwned;
    GBufferedInputStream& mSource;
    GEncodingRef mGivenEncoding;  // null: find it
    GEncodingRef mEncoding;
    GEncoding::ByteOrder mByteOrder = GEncoding::ByteOrder::cNone;  // a copy of the encoding's, for speed
    bool mHasLostBytes = false;
    CollectedText mCollected;  // 8-bit text byte by byte: it is decoded whole, wherever chunks ended
};
