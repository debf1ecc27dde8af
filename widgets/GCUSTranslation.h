#pragma once

#include "foundation/core/GPathName.h"

// The texts of the widgets in the user's language. They are looked up by context and English text, and where
// there is no translation the English text stands. For the main thread.
namespace GCUSTranslation
{
// Takes the translations of a file in Qt's form, in place of those that were loaded. False, with the
// English texts left, when the file is missing or damaged or there is no QCoreApplication.
[[nodiscard]] bool Load(const GPathName& file);

// Takes back what was loaded.
void Unload();

// `context` is the name of the class that shows the text; both are UTF-8.
GString Translate(const char* context, const char* text);
}  // namespace GCUSTranslation
