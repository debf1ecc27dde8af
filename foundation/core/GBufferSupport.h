#pragma once

#include "foundation/core/GString.h"

// Work on 8-bit text, and the readings of text that 8-bit and Unicode text share.
namespace GBufferSupport
{
// Escapes in place as GStringSupport::ReplaceSpecialChars does.
void ASCIIReplaceSpecialChars(GBuffer& text);

// Takes typed escapes back in place. An escape is a lead and a letter: the leads are the backslash and its
// stand-ins in Japanese code pages, 0x80 and 0xA5; `"`, `'` and `\` stand for themselves, `t` for TAB, `n`
// for CR LF. A lead with any other letter, or at the very end, stays. Not for UTF-8, whose characters hold
// bytes that look like leads.
void ASCIIReplaceEscapeCodes(GBuffer& text);

// The same for Unicode text, with the leads U+005C, U+0080 and U+00A5.
void UniReplaceEscapeCodes(GString& text);

// Names and keys of settings are bytes and stand in files as text: the byte's number is the character's.
// Gives the text of a name, and the name of a text. Of the characters above U+00FF those of WinAnsiEncoding
// give their byte there and all others '?', so that a name comes back from a file in any encoding that has
// U+00A0 to U+00FF.
GString GetNameText(const GBuffer& name);
GBuffer GetNameFromText(const GString& text);
}  // namespace GBufferSupport
