#pragma once

// Provides the QApplication that the plug-in's windows need, while one of these objects lives. If the host
// has a QApplication, that one is used; if not, this class makes one and deletes it again. If several of our
// modules are in one process, the first to start makes it and the last to end deletes it.
class ApplicationUse
{
public:
    // Raises a GCustomException if windows can't be shown: no display answers, Qt's plug-in for the display
    // is missing, or a Qt program runs without windows by its own choice.
    ApplicationUse();
    ~ApplicationUse();
    ApplicationUse(const ApplicationUse&) = delete;
    ApplicationUse& operator=(const ApplicationUse&) = delete;
};
