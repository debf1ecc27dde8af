#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GMemoryOutputStream.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/GText2BinStream.h"

#include <gtest/gtest.h>

namespace
{
const GEncodingRef cLayouts[] = {GEncoding::GetUTF8(), GEncoding::GetUTF16LittleEndian(),
                                 GEncoding::GetUTF16BigEndian()};

// A text stream over text in an encoding, through a buffer of a size.
class TextInput
{
public:
    TextInput(const GString& text, const GEncodingRef& encoding, int size)
        : TextInput(encoding->Encode(text), encoding, size)
    {
    }
    TextInput(const GBuffer& bytes, const GEncodingRef& encoding, int size)
        : mSource(bytes), mBuffered(mSource, size), mStream(mBuffered, encoding)
    {
    }
    GBin2TextStream* operator->() { return &mStream; }
    GString ReadRest()
    {
        GString rest;
        mStream.Read(GBin2TextStream::cLongestText, rest);
        return rest;
    }

private:
    GMemoryInputStream mSource;
    GBufferedInputStream mBuffered;
    GBin2TextStream mStream;
};
}  // namespace

TEST(TextStreamsTest, OutputBytesOfEachEncoding)
{
    const struct
    {
        GEncodingRef encoding;
        GBuffer bytes;
    } cases[] = {
        {GEncoding::GetUTF16LittleEndian(), GBuffer("\xFF\xFE\"\0\xE9\0\\\0n\0\"\0\r\0\n\0x\0", 18)},
        {GEncoding::GetUTF16BigEndian(), GBuffer("\xFE\xFF\0\"\0\xE9\0\\\0n\0\"\0\r\0\n\0x", 18)},
        {GEncoding::GetUTF8(), GBuffer("\"\xC3\xA9\\n\"\r\nx")},
        {GEncoding::GetWinAnsi(), GBuffer("\"\xE9\\n\"\r\nx")},
    };
    for (const auto& each : cases) {
        GMemoryOutputStream memory;
        GText2BinStream stream(memory, each.encoding);
        stream.WriteQuotedString(QStringLiteral("\u00E9\n"));
        stream.WriteEOL();
        stream.SetEncoding(each.encoding, GText2BinStream::ByteOrderMark::cNone);
        stream.Write("x");
        EXPECT_EQ(memory.GetData(), each.bytes) << each.encoding->GetName().toStdString();
    }
}

TEST(TextStreamsTest, TheEncodingIsFoundOrCheckedByTheMark)
{
    const GEncodingRef little = GEncoding::GetUTF16LittleEndian();
    const GEncodingRef big = GEncoding::GetUTF16BigEndian();
    const struct
    {
        GBuffer bytes;
        GEncodingRef given;
        GEncodingRef found;
        GString text;
    } cases[] = {
        {GBuffer("\xFF\xFE\xE9\0", 4), nullptr, little, QStringLiteral("\u00E9")},
        {GBuffer("\xFE\xFF\0\xE9", 4), nullptr, big, QStringLiteral("\u00E9")},
        {GBuffer("\xEF\xBB\xBF\xC3\xA9"), nullptr, GEncoding::GetUTF8(), QStringLiteral("\u00E9")},
        {GBuffer("ab"), nullptr, GEncoding::GetPlatform8Bit(), QStringLiteral("ab")},
        {GBuffer("a"), nullptr, GEncoding::GetPlatform8Bit(), QStringLiteral("a")},
        {GBuffer(), nullptr, GEncoding::GetPlatform8Bit(), QString()},
        {GBuffer("\xFE\xFF\0\xE9", 4), GEncoding::GetUTF16(), big, QStringLiteral("\u00E9")},
        {GBuffer("\xFF\xFE\xE9\0", 4), big, little, QStringLiteral("\u00E9")},
        {GBuffer("\0\xE9", 2), big, big, QStringLiteral("\u00E9")},
        {GBuffer("\xE9\0a", 3), little, little, QStringLiteral("\u00E9")},
        {GBuffer("\xEF\xBB\xBFx"), GEncoding::GetUTF8(), GEncoding::GetUTF8(), QStringLiteral("x")},
        {GBuffer("\xFF\xFEx"), GEncoding::GetWinAnsi(), GEncoding::GetWinAnsi(),
         QStringLiteral("\u00FF\u00FEx")},
    };
    for (const auto& each : cases) {
        TextInput input(each.bytes, each.given, 1024);
        EXPECT_EQ(input->GetEncoding(), each.found) << each.bytes.toHex().constData();
        EXPECT_EQ(input.ReadRest(), each.text) << each.bytes.toHex().constData();
        input->Reset();
        EXPECT_EQ(input.ReadRest(), each.text) << each.bytes.toHex().constData();
    }
}

TEST(TextStreamsTest, QuotedStringsWhereverTheChunksEnd)
{
    const struct
    {
        GString source;
        bool isRead;
        GString text;
        GString rest;
    } cases[] = {
        {QStringLiteral("\"\"x"), true, QString(), QStringLiteral("x")},
        {QStringLiteral("\"a b\"\"c\""), true, QStringLiteral("a b"), QStringLiteral("\"c\"")},
        {QStringLiteral("\"\\\"\\'\\\\\\t\\n\" "), true, QStringLiteral("\"'\\\t\r\n"), QStringLiteral(" ")},
        {QStringLiteral("\"\\x\\\u00E9\\\U0001D11E\\\\x\""), true,
         QStringLiteral("\\x\\\u00E9\\\U0001D11E\\x"), QString()},
        {QStringLiteral("\"\u00E9\u4E2D\U0001D11E\n\r\"!"), true,
         QStringLiteral("\u00E9\u4E2D\U0001D11E\n\r"), QStringLiteral("!")},
        {QStringLiteral("x\"y\""), false, QString(), QStringLiteral("x\"y\"")},
        {QStringLiteral("\"open \u00E9"), false, QStringLiteral("open \u00E9"), QString()},
        {QStringLiteral("\"end\\"), false, QStringLiteral("end\\"), QString()},
        {QString(), false, QString(), QString()},
    };
    for (const auto& each : cases) {
        for (const GEncodingRef& encoding : cLayouts) {
            for (const int size : {1, 2, 3, 5, 1024}) {
                // What comes before moves the text over the end of a chunk and of a buffer.
                for (const int before :
                     {0, 1, 250, 251, 252, 253, 254, 255, 256, 1010, 1020, 1021, 1022, 1023}) {
                    const GString lead(before, QLatin1Char('-'));
                    const GString quote =
                        each.source.startsWith(QLatin1Char('"')) ? each.source.left(1) : GString();
                    const bool isInside = before < 500 && !quote.isEmpty();  // else in front of the quote
                    const GString source = isInside ? quote + lead + each.source.mid(1) : lead + each.source;
                    TextInput input(source, encoding, size);
                    if (!isInside)
                        input->SkipChars(QStringLiteral("-"));
                    GString text;
                    ASSERT_EQ(input->ReadQuotedString(text), each.isRead) << source.toStdString();
                    ASSERT_EQ(text, isInside ? lead + each.text : each.text) << source.toStdString();
                    ASSERT_EQ(input.ReadRest(), each.rest) << source.toStdString();
                }
            }
        }
    }
}

TEST(TextStreamsTest, LinesEndInThreeWays)
{
    for (const GEncodingRef& encoding : cLayouts) {
        for (const int size : {1, 2, 3, 1024}) {
            TextInput input(QStringLiteral("a\nb\r\nc\rd\r\r\n\n\re"), encoding, size);
            for (const char* line : {"a", "b", "c", "d", "", "", "", "e"}) {
                GString text;
                ASSERT_TRUE(input->ReadLine(text));
                ASSERT_EQ(text, QLatin1String(line));
            }
            GString text;
            EXPECT_FALSE(input->ReadLine(text));
        }
    }
}

TEST(TextStreamsTest, TokensSetsAndTheWayBack)
{
    for (const GEncodingRef& encoding : cLayouts) {
        TextInput input(QStringLiteral(" \t\r\none\u00E9 \t two;three\n"), encoding, 3);
        GString text;
        EXPECT_EQ(input->SkipWhitespace(false), 2);
        EXPECT_EQ(input->SkipWhitespace(true), 2);
        EXPECT_EQ(input->GetPosition(), 4 * encoding->GetCharWidth());
        input->SetRollBackPoint();
        EXPECT_TRUE(input->ReadString(text));
        EXPECT_EQ(text, QStringLiteral("one\u00E9"));
        EXPECT_TRUE(input->RollBack());
        EXPECT_TRUE(input->Read(4, text));
        EXPECT_EQ(text, QStringLiteral("one\u00E9")) << "a character of UTF-8 is not cut";
        input->Unread(QStringLiteral("x\u4E2D"));
        EXPECT_TRUE(input->ReadString(text));
        EXPECT_EQ(text, QStringLiteral("x\u4E2D"));
        EXPECT_EQ(input->SkipChars(QStringLiteral("\t ")), 3);
        EXPECT_TRUE(input->ReadTillTerminator(QStringLiteral(",;"), text));
        EXPECT_EQ(text, QStringLiteral("two"));
        const auto clone = input->CreateClone();
        EXPECT_TRUE(static_cast<GBin2TextStream&>(*clone).ReadString(text));
        EXPECT_EQ(text, QStringLiteral(";three"));
        input->SkipLine();
        EXPECT_FALSE(input->ReadString(text));
        EXPECT_FALSE(input->ReadTillTerminator(QStringLiteral(","), text));
    }
}
