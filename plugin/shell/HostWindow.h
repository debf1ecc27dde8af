#pragma once

#include <qwindowdefs.h>

// The native identifier of the host's window that dialogs belong to; 0 for none. On Windows the first
// top-level window of this process, elsewhere the application's active window.
WId FindHostWindow();
