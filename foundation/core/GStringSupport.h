#pragma once

#include "foundation/core/GString.h"

#include <cstdint>

// Functions for text: the escapes of the settings files, scrambled text, and the text forms of numbers and
// booleans, which are the same in every language and country.
namespace GStringSupport
{
// Escapes, in place, the characters that are not allowed in a quoted string: TAB, `"` and `\` become `\t`,
// `\"` and `\\`; a line break in any form (LF, CR, CR LF, LF CR) becomes `\n`.
void ReplaceSpecialChars(GString& text);

// Escapes, and puts the text between quotes.
void QuoteString(GString& text);

// Replaces typed escapes by what they mean: see GBufferSupport::UniReplaceEscapeCodes. This is not quite the
// reverse of ReplaceSpecialChars: a line break comes back as CR LF, and an escape can begin with two more
// characters besides the backslash.
void SetSpecialCharacters(GString& text);

// Makes text hard to read at first sight, and readable again. It does not protect secrets. Any text comes
// back exactly. The scrambled text has only the characters U+0020 to U+007E, so a settings file in any
// encoding can hold it. A text that has only those characters and no `~` keeps its length.
//
// The scheme: first each unit below U+0020 or above U+007D becomes `~` and its four hexadecimal digits in
// capitals. Then the character at place i is moved up by k(i) places within the 95 characters from U+0020 on;
// after the last of them comes the first. k(i) is (s(i) >> 16) % 95, s(0) = 0x6D6F7276, s(i + 1) = s(i) *
// 1103515245 + 12345 in 32 bits. DeScramble does not change what Scramble never writes.
GString Scramble(const GString& text);
GString DeScramble(const GString& scrambled);

// "true" and "false". Only exactly "true" reads as true.
GString FromBool(bool value);
bool ToBool(const GString& text);
bool ToBool(const QStringRef& text);

// Decimal, with a sign where negative. A text that is not an integer of 32 bits reads as the fallback; blanks
// around a number are allowed.
GString FromInt32(int32_t value);
int32_t ToInt32(const GString& text, int32_t fallback = 0);

// The shortest decimal text that reads back as exactly the same number, with `.` and, for very large and very
// small numbers, `e`; also "inf", "-inf" and "nan". A text that is not a number reads as the fallback.
GString FromReal(double value);
double ToReal(const GString& text, double fallback = 0);
}  // namespace GStringSupport
