#pragma once

#include "foundation/core/GString.h"

// Why the plug-in does not start, in the user's language. Such a text may be needed before the plug-in's
// texts are loaded, or when they can't be loaded.
namespace RefusalText
{
// The translation of a text; the text itself if there is none, or if the language is not known. For the main
// thread; raises nothing.
GString Translate(const char* context, const char* text);
}  // namespace RefusalText
