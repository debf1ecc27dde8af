#pragma once

#include <qwindowdefs.h>

#include <functional>

// What the program around the widgets does when one of their windows is modal, and where such windows belong.
// For the main thread.
namespace GCUSModal
{
using Hook = std::function<void()>;

// The native identifier of the window that dialogs and message boxes belong to; 0 for none.
using ParentWindowProvider = std::function<WId()>;

// Empty functions take the hooks back. The one that is called afterwards must not raise; what the one before
// raises keeps the window from opening.
void SetHooks(Hook before, Hook after);
void SetParentWindowProvider(ParentWindowProvider provider);

// The parent window for a dialog that opens now; 0 for none, or without a provider.
WId GetParentWindow();

// For the time that a window is modal. The hooks are called around the outermost scope alone: a message box
// over a dialog is part of the dialog's modal time.
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
