#pragma once

// The plug-in's services above the foundation: its texts in the user's language, its alerts and its settings.
// The calls are counted: the first Initialize starts the services, the last Release ends them in reverse
// order. For the main thread. The foundation must be initialised, and the plug-in's folders and settings in
// place.
class PlugInServices
{
public:
    // If a step raises, everything is undone, the exception is passed on, and the call is not counted.
    static void Initialize();

    // One call too many is logged and does nothing.
    static void Release() noexcept;
};
