#pragma once

#include "foundation/core/GString.h"

class GCPTSaveAsTool;

// Opens the selection dialog under a title, modally over the host's window, and returns when it is closed. OK
// runs the export of the tool before that. For the main thread, with a QApplication; raises nothing but what
// the lack of memory does.
void RunExportDialog(const GString& title, GCPTSaveAsTool& tool);
