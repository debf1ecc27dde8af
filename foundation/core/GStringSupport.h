#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// Work on text: the escapes of the settings files, scrambled text, and the text forms of numbers and
// booleans, which are the same in every language and country.
namespace GStringSupport
{
// Escapes in place what can't stand in a quoted string: TAB, `"` and `\` become `\t`, `\"` and `\\`; a line
// break in any form (LF, CR, CR LF, LF CR) becomes `\n`.
void ReplaceSpecialChars(GString& text);

// Escapes, and puts the text between quotes.
void QuoteString(GString& text);

// Takes typed escapes back: see GBufferSupport::UniReplaceEscapeCodes. This is not quite the reverse of
// ReplaceSpecialChars: a line break comes back as CR LF, and two more characters than the backslash lead an
// escape.
void SetSpecialCharacters(GString& text);

// Makes text unreadable at a glance, and readable again; no secret is safe this way. Any text comes back
// unit by unit. The scrambled text holds only the characters U+0020 to U+007E, so it passes through a
// settings file in any encoding; text of those characters without `~` keeps its length.
//
// The scheme: first each unit below U+0020 or above U+007D becomes `~` and its four hexadecimal digits in
// capitals. Then the character at place i moves up by k(i) within the 95 characters from U+0020 on, past the
// last of them on to the first; k(i) is (s(i) >> 16) % 95, s(0) = 0x6D6F7276, s(i + 1) = s(i) * 1103515245 +
// 12345 in 32 bits. DeScramble leaves what Scramble never writes as it stands.
GString Scramble(const GString& text);
GString DeScramble(const GString& scrambled);

// "true" and "false". Only exactly "true" reads as true.
GString FromBool(bool value);
bool ToBool(const GString& text);
bool ToBool(const QStringRef& text);

// Decimal, with a sign where negative. A text that is no integer of 32 bits reads as the fallback; blanks
// around it do no harm.
GString FromInt32(int32_t value);
int32_t ToInt32(const GString& text, int32_t fallback = 0);

// The shortest decimal text that reads back as the very same number, with `.` and, for very large and small
// ones, `e`; "inf", "-inf" and "nan". A text that is no number reads as the fallback.
GString FromReal(double value);
double ToReal(const GString& text, double fallback = 0);
}  // namespace GStringSupport
