#pragma once

#include <qwindowdefs.h>

#include <functional>

// Tells the program around the widgets when one of their windows is modal, and asks it for the parent of such
// windows. For the main thread.
namespace GCUSModal
{
using Hook = std::function<void()>;

// The native identifier of the window that dialogs and message boxes belong to; 0 for none.
using ParentWindowProvider = std::function<WId()>;

// Empty functions remove the hooks. `after` must not raise. If `before` raises, the window does not open.
void SetHooks(Hook before, Hook after);
void SetParentWindowProvider(ParentWindowProvider provider);

// The parent window for a dialog that opens now; 0 for none, or without a provider.
WId GetParentWindow();

// Exists while a window is modal. The hooks are called only around the outermost scope: a message box over a
// dialog is part of the dialog's modal time.
class Scope
{
public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    bool mIsOutermost;
};
}  // namespace GCUSModal
