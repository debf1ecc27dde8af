#pragma once

// Keeps this module in memory until the process ends, whoever unloads it: Qt keeps pointers into a module
// that has used it, and calls them when its own objects go. A failure is logged.
void KeepModuleLoaded();
