#pragma once

#include "foundation/core/GString.h"

// The escapes of the settings files, for texts of 8-bit and of 16-bit units: Text is GBuffer or GString, Unit
// char or QChar.
namespace EscapeCodes
{
// What stands for a line break in text that was unescaped, on every platform.
constexpr char cLineBreak[] = {'\r', '\n'};

inline ushort GetNumber(char unit)
{
    return static_cast<uchar>(unit);
}
inline ushort GetNumber(QChar unit)
{
    return unit.unicode();
}
inline void Append(GBuffer& target, char ascii)
{
    target.append(ascii);
}
inline void Append(GString& target, char ascii)
{
    target.append(QLatin1Char(ascii));
}

inline void AppendRun(GBuffer& target, const char* begin, int count)
{
    target.append(begin, count);
}
inline void AppendRun(GString& target, const QChar* begin, int count)
{
    target.append(begin, count);
}
// Bytes of a name: their numbers are their characters'.
inline void AppendRun(GString& target, const char* begin, int count)
{
    target.append(QLatin1String(begin, count));
}

// The letter behind the backslash in the escape of a character; NUL for one that stands in a quoted string as
// it is.
template <typename Unit>
char GetLetter(Unit unit)
{
    switch (GetNumber(unit)) {
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
template <typename Unit>
bool IsOneLineBreak(Unit first, Unit second)
{
    return GetLetter(first) == 'n' && GetLetter(second) == 'n' && first != second;
}

// Appends [begin, end) to the target, escaped. CR LF and LF CR are one line break.
template <typename Text, typename Unit>
void AppendEscaped(Text& target, const Unit* begin, const Unit* end)
{
    const Unit* plain = begin;  // what comes before the next special character goes over in one piece
    for (const Unit* at = begin; at != end; ++at) {
        const char letter = GetLetter(*at);
        if (letter == '\0')
            continue;
        AppendRun(target, plain, static_cast<int>(at - plain));
        Append(target, '\\');
        Append(target, letter);
        if (at + 1 != end && IsOneLineBreak(*at, at[1]))
            ++at;
        plain = at + 1;
    }
    AppendRun(target, plain, static_cast<int>(end - plain));
}

// Appends what the letter behind a lead stands for; false when it stands for nothing.
template <typename Text, typename Unit>
bool AppendMeaning(Text& target, Unit letter)
{
    switch (GetNumber(letter)) {
        case '"':
        case '\'':
        case '\\':
            target.append(letter);
            return true;
        case 't':
            Append(target, '\t');
            return true;
        case 'n':
            for (const char unit : cLineBreak)
                Append(target, unit);
            return true;
        default:
            return false;
    }
}
}  // namespace EscapeCodes
