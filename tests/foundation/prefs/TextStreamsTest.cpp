#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GMemoryOutputStream.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/GText2BinStream.h"

#include <QStringList>

#include <gtest/gtest.h>

#include <map>

namespace
{
const GEncodingRef cLayouts[] = {GEncoding::GetUTF8(), GEncoding::GetUTF16LittleEndian(),
                                 GEncoding::GetUTF16BigEndian()};

// A text stream over bytes, through a buffer of a size.
struct TextInput
{
    TextInput(const GBuffer& bytes, const GEncodingRef& encoding, int size)
        : source(bytes), buffered(source, size), stream(buffered, encoding)
    {
    }
    GBin2TextStream* operator->() { return &stream; }
    GString ReadRest()
    {
        GString rest;
        stream.Read(GBin2TextStream::cLongestText, rest);
        return rest;
    }

    GMemoryInputStream source;
    GBufferedInputStream buffered;
    GBin2TextStream stream;
};
}  // namespace

TEST(TextStreamsTest, OutputBytesOfEachEncoding)
{
    const std::map<GEncodingRef, GBuffer> cases = {
        {GEncoding::GetUTF16LittleEndian(), GBuffer("\xFF\xFE\"\0\xE9\0\\\0n\0\"\0\r\0\n\0x\0", 18)},
        {GEncoding::GetUTF16BigEndian(), GBuffer("\xFE\xFF\0\"\0\xE9\0\\\0n\0\"\0\r\0\n\0x", 18)},
        {GEncoding::GetUTF8(), GBuffer("\"\xC3\xA9\\n\"\r\nx")},
        {GEncoding::GetWinAnsi(), GBuffer("\"\xE9\\n\"\r\nx")},
    };
    for (const auto& each : cases) {
        GMemoryOutputStream memory;
        GText2BinStream stream(memory, each.first);
        stream.WriteQuotedString(QStringLiteral("\u00E9\n"));
        stream.WriteEOL();
        stream.SetEncoding(each.first, GText2BinStream::ByteOrderMark::cNone);
        stream.Write("x");
        EXPECT_EQ(memory.GetData(), each.second) << each.first->GetName().toStdString();
    }
}

TEST(TextStreamsTest, TheEncodingIsFoundOrCheckedByTheMark)
{
    const GEncodingRef little = GEncoding::GetUTF16LittleEndian(), big = GEncoding::GetUTF16BigEndian();
    const GString text = QStringLiteral("\u00E9");
    const struct
    {
        GBuffer bytes;
        GEncodingRef given, found;
        GString text;
    } cases[] = {
        {GBuffer("\xFF\xFE\xE9\0", 4), nullptr, little, text},
        {GBuffer("\xFE\xFF\0\xE9", 4), nullptr, big, text},
        {GBuffer("\xEF\xBB\xBF\xC3\xA9"), nullptr, GEncoding::GetUTF8(), text},
        {GBuffer("a"), nullptr, GEncoding::GetPlatform8Bit(), QStringLiteral("a")},
        {GBuffer(), nullptr, GEncoding::GetPlatform8Bit(), QString()},
        {GBuffer("\xFE\xFF\0\xE9", 4), GEncoding::GetUTF16(), big, text},
        {GBuffer("\xFF\xFE\xE9\0", 4), big, little, text},
        {GBuffer("\0\xE9", 2), big, big, text},
        {GBuffer("\xE9\0a", 3), little, little, text},
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
        GString text, rest;
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
                // What is put behind the quote moves the rest over the end of a chunk, in front of it over
                // the end of a buffer.
                for (const int before : {0, 1, 250, 252, 253, 254, 255, 256, 1010, 1020, 1021, 1022, 1023}) {
                    const GString lead(before, QLatin1Char('-'));
                    const bool isInside = before < 500 && each.source.startsWith(QLatin1Char('"'));
                    const GString source = GString(each.source).insert(isInside ? 1 : 0, lead);
                    TextInput input(encoding->Encode(source), encoding, size);
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
            TextInput input(encoding->Encode(QStringLiteral("a\nb\r\nc\rd\r\r\n\n\re")), encoding, size);
            QStringList lines;
            for (GString line; input->ReadLine(line);)
                lines << line;
            EXPECT_EQ(lines.join(QLatin1Char('|')), QStringLiteral("a|b|c|d||||e"));
        }
    }
}

TEST(TextStreamsTest, TokensSetsAndTheWayBack)
{
    for (const GEncodingRef& encoding : cLayouts) {
        TextInput input(encoding->Encode(QStringLiteral(" \t\r\none\u00E9 \t two;three\n")), encoding, 3);
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
