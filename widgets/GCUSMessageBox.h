#pragma once

#include "foundation/core/GString.h"

// Message boxes. Each is modal over the parent window and returns when the user has closed it. Texts are
// shown as they stand: nothing in them is taken for a format; one that the screen is too small for can be
// scrolled. For the main thread, with a QApplication.
namespace GCUSMessageBox
{
// One button, "OK".
void ShowInformation(const GString& title, const GString& text);
void ShowError(const GString& title, const GString& text);

// Two buttons, "OK" and "Cancel"; neither is the default, so that no stray return key answers. True for "OK"
// alone: closing the box is "Cancel".
[[nodiscard]] bool ConfirmWarning(const GString& title, const GString& text);
}  // namespace GCUSMessageBox
