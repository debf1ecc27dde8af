#pragma once

// The plug-in's services above the foundation: its texts in the user's language, its alerts and its
// settings. Counted: the first initialisation brings them up, the last release takes them down in reverse.
// For the main thread, with the foundation initialised and the plug-in's folders and settings in place.
class PlugInServices
{
public:
    // Raises what a step raises, with everything undone, and counts for nothing then.
    static void Initialize();

    // A release too many is logged and does nothing.
    static void Release() noexcept;
};
