#pragma once

#include <qwindowdefs.h>

// The native identifier of the host's window that dialogs belong to; 0 for none. On Windows this is the first
// top-level window of this process, on other systems the application's active window.
WId FindHostWindow();
