#pragma once

#include "foundation/core/GString.h"

// Functions for 8-bit text, and ways of reading text that 8-bit and Unicode text have in common.
namespace GBufferSupport
{
// Escapes in place as GStringSupport::ReplaceSpecialChars does.
void ASCIIReplaceSpecialChars(GBuffer& text);

// Replaces typed escapes by what they mean, in place. An escape is a lead and a letter: the leads are the
// backslash and its stand-ins in Japanese code pages, 0x80 and 0xA5; `"`, `'` and `\` stand for themselves,
// `t` for TAB, `n` for CR LF. A lead with any other letter, or at the very end, stays. Not for UTF-8, because
// its characters can contain bytes that look like leads.
void ASCIIReplaceEscapeCodes(GBuffer& text);

// The same for Unicode text, with the leads U+005C, U+0080 and U+00A5.
void UniReplaceEscapeCodes(GString& text);

// Names and keys of settings are bytes, but text in files: each byte becomes the character with the same
// number. These functions give the text of a name, and the name of a text. A character above U+00FF becomes
// its byte in WinAnsiEncoding, or '?' if it has none. So a name comes back from a file in any encoding that
// has U+00A0 to U+00FF.
GString GetNameText(const GBuffer& name);
GBuffer GetNameFromText(const GString& text);
}  // namespace GBufferSupport
