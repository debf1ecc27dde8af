#pragma once

#include "foundation/core/GPathName.h"

// The texts of the widgets in the user's language. They are looked up by context and English text; if there
// is no translation, the English text is used. For the main thread.
namespace GCUSTranslation
{
// Loads the translations of a file in Qt's form, and replaces those that were loaded before. False when the
// file is missing or damaged or there is no QCoreApplication; the texts are then English.
[[nodiscard]] bool Load(const GPathName& file);

// Removes the loaded translations.
void Unload();

// `context` is the name of the class that shows the text; both are UTF-8.
GString Translate(const char* context, const char* text);
}  // namespace GCUSTranslation
