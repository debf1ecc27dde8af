#pragma once

#include "foundation/core/GString.h"

// Why the plug-in does not start, in the user's language. Such a text may be needed before the plug-in's
// texts are there, and when they won't be.
namespace RefusalText
{
// The translation of a text; the text itself where there is none, or where nobody can tell the language. For
// the main thread; raises nothing.
GString Translate(const char* context, const char* text);
}  // namespace RefusalText
