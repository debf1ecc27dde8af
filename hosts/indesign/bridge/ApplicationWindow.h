#pragma once

#include <cstdint>
#include <memory>

// The window of the application that the helper serves. On Windows the helper's dialogs are owned by it, so
// that they stay in front of it, and it takes no input while they are open; elsewhere this does nothing.
class ApplicationWindow
{
public:
    ApplicationWindow();

    // Lets the window take input again.
    ~ApplicationWindow();
    ApplicationWindow(const ApplicationWindow&) = delete;
    ApplicationWindow& operator=(const ApplicationWindow&) = delete;

    // Finds the window: the largest of the process that has this end of a connection on this computer. Also
    // lets it take input, should an earlier helper have died with a dialog open.
    void Find(uint16_t port);

    // Lets the window rest, or not.
    void SetResting(bool isResting);

private:
    struct Windows;
    std::unique_ptr<Windows> mWindows;
};
