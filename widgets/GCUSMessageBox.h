#pragma once

#include "foundation/core/GString.h"

// Message boxes. Each is modal over the parent window and returns when the user has closed it. Texts are
// shown as plain text, without any formatting. A text that is too large for the screen can be scrolled. For
// the main thread, with a QApplication.
namespace GCUSMessageBox
{
// One button, "OK".
void ShowInformation(const GString& title, const GString& text);
void ShowError(const GString& title, const GString& text);

// Two buttons, "OK" and "Cancel". Neither is the default, so that an accidental Return key gives no answer.
// True only for "OK": closing the box means "Cancel".
[[nodiscard]] bool ConfirmWarning(const GString& title, const GString& text);
}  // namespace GCUSMessageBox
