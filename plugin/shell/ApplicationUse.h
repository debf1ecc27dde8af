#pragma once

// The QApplication that the plug-in's windows need, while one of these lives. A host that has one keeps its
// own; where there is none, this makes one and takes it down again. Where several modules of ours are in one
// process, the first that comes makes it, and the last that goes takes it down.
class ApplicationUse
{
public:
    // Raises a GCustomException where windows can't be shown: without a display that answers, without Qt's
    // plug-in for it, and in a Qt program that has chosen to do without windows.
    ApplicationUse();
    ~ApplicationUse();
    ApplicationUse(const ApplicationUse&) = delete;
    ApplicationUse& operator=(const ApplicationUse&) = delete;
};
