#pragma once

// Keeps this module in memory until the process ends, even if somebody unloads it: Qt keeps pointers into a
// module that has used Qt, and calls them when Qt's own objects are deleted. A failure is logged.
void KeepModuleLoaded();
