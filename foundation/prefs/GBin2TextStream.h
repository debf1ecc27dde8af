#pragma once

#include "foundation/core/GBufferedInputStream.h"
#include "foundation/core/GEncoding.h"
#include "foundation/prefs/CollectedText.h"

// Reads text from bytes: tokens, lines, quoted strings. Looks at no more of the source than its buffer and
// what the text in hand needs.
//
// Sets of characters (SkipChars, ReadTillTerminator) are of ASCII characters. Whitespace is blank, TAB, LF
// and CR. A last odd byte of UTF-16 is no character: the data ends before it. No text that is read becomes
// longer than cLongestText; the data ends there for whoever reads it.
class GBin2TextStream : public GInputStream
{
public:
    static constexpr int cLongestText = 1 << 28;

    // Reads from `source`, which outlives this stream or belongs to it, in `encoding`; a byte order mark of
    // that encoding is passed over, and for UTF-16 decides about the order. Null finds the encoding: the mark
    // of UTF-16 or UTF-8, else the platform's 8-bit encoding.
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

    // Reads a quoted string and takes its escapes back; `\n` becomes CR LF, a `\` before anything that is no
    // escape stays. False, with nothing consumed, when the next character is no quote; false also, with what
    // was read as the text, when the data ends before the closing quote.
    [[nodiscard]] bool ReadQuotedString(GString& text);

    // Reads up to `count` characters: UTF-16 units, or bytes of an 8-bit encoding, where a character of UTF-8
    // that begins within the count is read whole. Gives whether there were any.
    [[nodiscard]] bool Read(int count, GString& text);

    // Puts text in front of what comes next.
    void Unread(const GString& text);

    void SetRollBackPoint();
    [[nodiscard]] bool RollBack();

    // The bytes as they stand in the source, in no encoding.
    int Read(char* bytes, int count) override;

    // Goes back to the first character; an encoding that was found is found anew.
    void Reset() override;

    std::unique_ptr<GInputStream> CreateClone() const override;

    // The bytes of the source before the next character, the byte order mark among them.
    int64_t GetPosition() const { return mSource.GetPosition(); }

    // Whether any text that was read held bytes that are no character in the encoding: they can't be written
    // back as they were.
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
    GEncoding::ByteOrder mByteOrder = GEncoding::ByteOrder::cNone;  // the encoding's, close at hand
    bool mHasLostBytes = false;
    CollectedText mCollected;  // 8-bit text byte by byte: it is decoded whole, wherever chunks ended
};
