#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GStringSupport.h"
#include "tests/support/Test.h"

#include <cmath>
#include <limits>
#include <vector>

// What a change in place makes of each text, and of its bytes.
template <typename ChangeText, typename ChangeBytes>
static void Check(const std::vector<std::pair<GString, GString>>& cases, ChangeText changeText,
                  ChangeBytes changeBytes)
{
    for (const auto& [before, after] : cases) {
        GString text = before;
        changeText(text);
        EXPECT_EQ(text, after);
        GBuffer bytes = before.toLatin1();
        changeBytes(bytes);
        EXPECT_EQ(bytes, after.toLatin1());
    }
}

TEST(SupportTest, SpecialCharactersAreEscapedAndTypedEscapesTakenBack)
{
    Check({{QString(), QString()},
           {"say\t\"a\\b\" 'c'"_q, "say\\t\\\"a\\\\b\\\" 'c'"_q},
           {"a\r\nb\n\rc"_q, "a\\nb\\nc"_q},
           {"\r\r\n\n"_q, "\\n\\n\\n"_q},
           {"\u0001\u00A5\u4E2D"_q, "\u0001\u00A5\u4E2D"_q}},
          GStringSupport::ReplaceSpecialChars, GBufferSupport::ASCIIReplaceSpecialChars);
    Check({{"\\t\\n\\\"\\'\\\\"_q, "\t\r\n\"'\\"_q},
           {"\\x\\"_q, "\\x\\"_q},
           {"\\\\n"_q, "\\n"_q},
           {"\u0080n\u00A5n\u00A5\\"_q, "\r\n\r\n\\"_q},
           {"\u00A5x\u0080"_q, "\u00A5x\u0080"_q},
           {"\u00A5\u00A5n"_q, "\u00A5\r\n"_q}},
          GStringSupport::SetSpecialCharacters, GBufferSupport::ASCIIReplaceEscapeCodes);
    GString quoted = "a\""_q;
    GStringSupport::QuoteString(quoted);
    EXPECT_EQ(quoted, "\"a\\\"\""_q);
}

TEST(SupportTest, EveryByteOfANameComesBack)
{
    GBuffer name;
    for (int byte = 0; byte < 256; ++byte)
        name.append(static_cast<char>(byte));
    EXPECT_EQ(GBufferSupport::GetNameFromText(GBufferSupport::GetNameText(name)), name);
    EXPECT_EQ(GBufferSupport::GetNameFromText("\u20AC\u00E9\u4E2D"_q), GBuffer("\x80\xE9?"));
}

TEST(SupportTest, ScrambledTextComesBackAndIsPlain)
{
    GString everything;
    for (int unit = 0; unit < 0x10000; unit += 1 + unit / 500)
        everything += QChar(unit);
    const GString password = "An archive's pass word, 29 ch"_q;
    for (const GString& text : {GString(), password, everything, "~0041~"_q, "\n\r\n"_q}) {
        const GString scrambled = GStringSupport::Scramble(text);
        EXPECT_EQ(GStringSupport::DeScramble(scrambled), text);
        for (const QChar character : scrambled)
            ASSERT_TRUE(character.unicode() >= 0x20 && character.unicode() < 0x7F);
    }
    EXPECT_EQ(GStringSupport::Scramble(password).size(), password.size());
    // Files hold scrambled values: the scheme never changes.
    EXPECT_EQ(GStringSupport::Scramble("key \u00E9"_q), "a9W(0*%/["_q);
    // Nor does damage keep it from being read: what is no escape stays.
    for (const char* damaged : {"~", "~00", "~zzzz", "~0x1F", "~ +41"}) {
        GString scrambled = QString::fromLatin1(damaged);
        const GString steps = GStringSupport::Scramble(GString(scrambled.size(), QLatin1Char(' ')));
        for (int at = 0; at < steps.size(); ++at)
            scrambled[at] = QChar(' ' + (scrambled[at].unicode() + steps[at].unicode() - 2 * ' ') % 95);
        EXPECT_EQ(GStringSupport::DeScramble(scrambled), QString::fromLatin1(damaged));
    }
}

TEST(SupportTest, NumbersReadBackAsTheyWereWritten)
{
    for (const double value :
         {0.0, 0.1, -1.0 / 3, 1e300, 5e-324, 123456789.125, std::numeric_limits<double>::max()})
        EXPECT_EQ(GStringSupport::ToReal(GStringSupport::FromReal(value), -7), value);
    EXPECT_EQ(GStringSupport::FromReal(0.1), "0.1"_q);
    EXPECT_TRUE(std::signbit(GStringSupport::ToReal(GStringSupport::FromReal(-0.0))));
    EXPECT_TRUE(std::isinf(GStringSupport::ToReal(GStringSupport::FromReal(-HUGE_VAL))));
    EXPECT_EQ(GStringSupport::ToReal("1,5"_q, -7), -7);

    EXPECT_EQ(GStringSupport::FromInt32(std::numeric_limits<int32_t>::min()), "-2147483648"_q);
    EXPECT_EQ(GStringSupport::ToInt32(" -12 "_q), -12);
    for (const char* text : {"", "x", "1.5", "2147483648", "12x"})
        EXPECT_EQ(GStringSupport::ToInt32(QString::fromLatin1(text), -7), -7) << text;

    for (const char* text : {"", "True", "TRUE", "1", "true ", "false"})
        EXPECT_FALSE(GStringSupport::ToBool(QString::fromLatin1(text))) << text;
    EXPECT_TRUE(GStringSupport::ToBool(GStringSupport::FromBool(true)));
    EXPECT_FALSE(GStringSupport::ToBool(GStringSupport::FromBool(false)));
}
