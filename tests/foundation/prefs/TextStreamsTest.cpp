#include "foundation/core/GMemoryInputStream.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "tests/support/Test.h"

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
        static_cast<void>(stream.Read(GBin2TextStream::cLongestText, rest));
        return rest;
    }

    GMemoryInputStream source;
    GBufferedInputStream buffered;
    GBin2TextStream stream;
};
}  // namespace

TEST(TextStreamsTest, TheEncodingIsFoundOrCheckedByTheMark)
{
    const GEncodingRef little = GEncoding::GetUTF16LittleEndian(), big = GEncoding::GetUTF16BigEndian();
    const GString text = "\u00E9"_q;
    const std::tuple<GBuffer, GEncodingRef, GEncodingRef, GString> cases[] = {
        {GBuffer("\xFF\xFE\xE9\0", 4), nullptr, little, text},
        {GBuffer("\xFE\xFF\0\xE9", 4), nullptr, big, text},
        {GBuffer("\xEF\xBB\xBF\xC3\xA9"), nullptr, GEncoding::GetUTF8(), text},
        {GBuffer("a"), nullptr, GEncoding::GetPlatform8Bit(), "a"_q},
        {GBuffer(), nullptr, GEncoding::GetPlatform8Bit(), QString()},
        {GBuffer("\xFE\xFF\0\xE9", 4), GEncoding::GetUTF16(), big, text},
        {GBuffer("\xFF\xFE\xE9\0", 4), big, little, text},
        {GBuffer("\0\xE9", 2), big, big, text},
        {GBuffer("\xE9\0a", 3), little, little, text},
        {GBuffer("\xEF\xBB\xBFx"), GEncoding::GetUTF8(), GEncoding::GetUTF8(), "x"_q},
        {GBuffer("\xFF\xFEx"), GEncoding::GetWinAnsi(), GEncoding::GetWinAnsi(), "\u00FF\u00FEx"_q},
    };
    for (const auto& [bytes, given, found, expected] : cases) {
        TextInput input(bytes, given, 1024);
        EXPECT_EQ(input->GetEncoding(), found) << bytes.toHex().constData();
        EXPECT_EQ(input.ReadRest(), expected) << bytes.toHex().constData();
        input->Reset();
        EXPECT_EQ(input.ReadRest(), expected) << bytes.toHex().constData();
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
        {"\"\"x"_q, true, QString(), "x"_q},
        {"\"a b\"\"c\""_q, true, "a b"_q, "\"c\""_q},
        {"\"\\\"\\'\\\\\\t\\n\" "_q, true, "\"'\\\t\r\n"_q, " "_q},
        {"\"\\x\\\u00E9\\\U0001D11E\\\\x\""_q, true, "\\x\\\u00E9\\\U0001D11E\\x"_q, QString()},
        {"\"\u00E9\u4E2D\U0001D11E\n\r\"!"_q, true, "\u00E9\u4E2D\U0001D11E\n\r"_q, "!"_q},
        {"x\"y\""_q, false, QString(), "x\"y\""_q},
        {"\"open \u00E9"_q, false, "open \u00E9"_q, QString()},
        {"\"end\\"_q, false, "end\\"_q, QString()},
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
                        input->SkipChars("-"_q);
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
    for (const int size : {1, 2, 3, 1024}) {
        TextInput input("a\nb\r\nc\rd\r\r\n\n\re", GEncoding::GetUTF8(), size);
        QStringList lines;
        for (GString line; input->ReadLine(line);)
            lines << line;
        EXPECT_EQ(lines, "a|b|c|d||||e"_list);
    }
}

TEST(TextStreamsTest, TokensSetsAndTheWayBack)
{
    for (const GEncodingRef& encoding : cLayouts) {
        TextInput input(encoding->Encode(" \t\r\none\u00E9 \t two;three\n"_q), encoding, 3);
        GString text;
        EXPECT_EQ(input->SkipWhitespace(false), 2);
        EXPECT_EQ(input->SkipWhitespace(true), 2);
        EXPECT_EQ(input->GetPosition(), 4 * encoding->GetCharWidth());
        input->SetRollBackPoint();
        EXPECT_TRUE(input->ReadString(text));
        EXPECT_EQ(text, "one\u00E9"_q);
        EXPECT_TRUE(input->RollBack());
        EXPECT_TRUE(input->Read(4, text));
        EXPECT_EQ(text, "one\u00E9"_q) << "a character of UTF-8 is not cut";
        input->Unread("x\u4E2D"_q);
        EXPECT_TRUE(input->ReadString(text));
        EXPECT_EQ(text, "x\u4E2D"_q);
        EXPECT_EQ(input->SkipChars("\t "_q), 3);
        EXPECT_TRUE(input->ReadTillTerminator(",;"_q, text));
        EXPECT_EQ(text, "two"_q);
        EXPECT_FALSE(input->SkipLine());
        EXPECT_FALSE(input->ReadString(text));
    }
}
