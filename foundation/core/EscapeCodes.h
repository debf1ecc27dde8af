#pragma once

#include "foundation/core/GString.h"

#include <algorithm>

// The escapes of the settings files, for texts of 8-bit and of 16-bit units: Unit is char or QChar.
namespace EscapeCodes
{
inline ushort GetNumber(char unit)
{
    return static_cast<uchar>(unit);
}
inline ushort GetNumber(QChar unit)
{
    return unit.unicode();
}

// The letter after the backslash in the escape of a character; NUL for a character that needs no escape in a
// quoted string.
inline char GetLetter(ushort unit)
{
    switch (unit) {
        case '\t':
            return 't';
        case '\n':
        case '\r':
            return 'n';
        case '"':
            return '"';
        case '\\':
            return '\\';
        default:
            return '\0';
    }
}

// True when the two units are the halves of one line break: CR LF or LF CR.
inline bool IsOneLineBreak(ushort first, ushort second)
{
    return GetLetter(first) == 'n' && GetLetter(second) == 'n' && first != second;
}

// Writes [begin, end) to `target` with the escapes and gives the end of what it wrote, which is at most twice
// as many units. CR LF and LF CR are one line break. If the target's units are wider than the source's, they
// hold the numbers of the source's units.
template <typename Unit, typename Target>
Target* WriteEscaped(const Unit* begin, const Unit* end, Target* target)
{
    for (const Unit* at = begin; at != end; ++at) {
        const ushort number = GetNumber(*at);
        const bool isPlain = number > '"' && number != '\\';  // avoids the look-up for nearly all units
        const char letter = isPlain ? '\0' : GetLetter(number);
        if (letter == '\0') {
            *target++ = static_cast<Target>(number);
            continue;
        }
        *target++ = static_cast<Target>('\\');
        *target++ = static_cast<Target>(static_cast<uchar>(letter));
        if (at + 1 != end && IsOneLineBreak(number, GetNumber(at[1])))
            ++at;
    }
    return target;
}

// What the letter after a lead (the first character of an escape) stands for, in ASCII; empty when it has no
// meaning. A line break is CR LF on every platform.
inline QLatin1String GetMeaning(ushort letter)
{
    switch (letter) {
        case '"':
            return QLatin1String("\"", 1);
        case '\'':
            return QLatin1String("'", 1);
        case '\\':
            return QLatin1String("\\", 1);
        case 't':
            return QLatin1String("\t", 1);
        case 'n':
            return QLatin1String("\r\n", 2);
        default:
            return QLatin1String();
    }
}

// The two rules for which characters begin an escape: one for the quoted strings of files, one for texts that
// people type. In the second, two more characters stand for the backslash of some code pages.
struct InQuotes
{
    static bool IsLead(ushort unit) { return unit == '\\'; }
};
struct InTypedText
{
    static bool IsLead(ushort unit) { return unit == '\\' || unit == 0x80 || unit == 0xA5; }
};

inline void Append(GBuffer& target, QLatin1String text)
{
    target.append(text.data(), text.size());
}
inline void Append(GString& target, QLatin1String text)
{
    target.append(text);
}

// Appends the unit at `at`, or the meaning of the escape that begins there, and gives the place after it. A
// lead with nothing after it, or with a letter without a meaning, stands for itself.
template <typename Rule, typename Unit, typename Text>
const Unit* TakeBack(const Unit* at, const Unit* end, Text& text)
{
    const bool isEscape = Rule::IsLead(GetNumber(*at)) && at + 1 != end;
    const QLatin1String meaning = isEscape ? GetMeaning(GetNumber(at[1])) : QLatin1String();
    if (meaning.isEmpty()) {
        text.append(*at);
        return at + 1;
    }
    Append(text, meaning);
    return at + 2;
}

// The same for a whole text: a GBuffer, a GString, or a type that can be used like one.
template <typename Rule, typename Text, typename Source>
Text TakeAllBack(const Source& source)
{
    Text text;
    text.reserve(source.size());
    const auto end = source.cend();
    for (auto at = source.cbegin(); at != end;) {
        const auto lead = std::find_if(at, end, [](auto unit) { return Rule::IsLead(GetNumber(unit)); });
        text.append(at, static_cast<int>(lead - at));
        at = lead == end ? end : TakeBack<Rule>(lead, end, text);
    }
    return text;
}
}  // namespace EscapeCodes
