#include "foundation/core/GEncoding.h"

#include <gtest/gtest.h>

TEST(GEncodingTest, WritesAndReadsTheBytesOfEachEncoding)
{
    const GString text = QStringLiteral("A\u00E9\u20AC\U0001D11E");
    const std::tuple<GEncodingRef, GString, GBuffer> cases[] = {
        {GEncoding::GetUTF16LittleEndian(), text, GBuffer("A\0\xE9\0\xAC\x20\x34\xD8\x1E\xDD", 10)},
        {GEncoding::GetUTF16BigEndian(), text, GBuffer("\0A\0\xE9\x20\xAC\xD8\x34\xDD\x1E", 10)},
        {GEncoding::GetUTF8(), text, GBuffer("A\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E")},
        {GEncoding::GetUTF8(), GString(2, QChar::ByteOrderMark) + QLatin1Char('x'),
         GBuffer("\xEF\xBB\xBF\xEF\xBB\xBFx")},
        {GEncoding::GetUTF8(), QStringLiteral("\uFFFE\uFFFF\u0001"), GBuffer("\xEF\xBF\xBE\xEF\xBF\xBF\x01")},
        {GEncoding::GetWinAnsi(), QStringLiteral("A\u20AC\u017E\u0178\u00A0\u00FF\u0081"),
         GBuffer("A\x80\x9E\x9F\xA0\xFF\x81")},
        {GEncoding::GetOEM(), QStringLiteral("A\u00E9\u2592"), GBuffer("A\x82\xB1")},
    };
    for (const auto& [encoding, decoded, bytes] : cases) {
        EXPECT_EQ(encoding->Encode(decoded), bytes) << encoding->GetName().toStdString();
        EXPECT_EQ(encoding->Decode(bytes), decoded) << encoding->GetName().toStdString();
    }
}

TEST(GEncodingTest, EachMissingCharacterBecomesOneReplacement)
{
    // A-macron and the minus sign have look-alikes in ASCII; the last is a pair of units, then a lone half.
    const GString text = QStringLiteral("\u0100|\u2212|\U0001D11E|") + QChar(0xD834);
    EXPECT_EQ(GEncoding::GetOEM()->Encode(text, '_'), GBuffer("_|_|_|_"));
    EXPECT_EQ(GEncoding::GetWinAnsi()->Encode(text), GBuffer("?|?|?|?"));
}

TEST(GEncodingTest, EveryByteOfTheCodePagesComesBack)
{
    GBuffer bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.append(static_cast<char>(byte));
    for (const GEncodingRef& encoding : {GEncoding::GetWinAnsi(), GEncoding::GetOEM()})
        EXPECT_EQ(encoding->Encode(encoding->Decode(bytes)), bytes) << encoding->GetName().toStdString();
}

TEST(GEncodingTest, NamesFindTheirEncodings)
{
    EXPECT_EQ(GEncoding::FindByName(QStringLiteral("WinAnsiEncoding")), GEncoding::GetWinAnsi());
    EXPECT_EQ(GEncoding::FindByName(QStringLiteral("utf-16")), GEncoding::GetUTF16());
    EXPECT_EQ(GEncoding::FindByName(GEncoding::GetOEM()->GetName()), GEncoding::GetOEM());
    EXPECT_EQ(GEncoding::FindByName(QStringLiteral("Windows")), nullptr);
}
