#pragma once

#include "plugin/shell/ApplicationUse.h"
#include "plugin/shell/ModalHooks.h"

// Everything that the plug-in's actions stand on, brought up in order when one of these is made and released
// in reverse when it goes: the application, the foundation, the plug-in's folders and settings, its texts and
// alerts, and the hooks for its windows. Raises what a step raises, with the steps before it undone.
class ShellServices
{
public:
    // The foundation with the plug-in's folders and settings.
    class Foundation
    {
    public:
        Foundation();
        ~Foundation();
        Foundation(const Foundation&) = delete;
        Foundation& operator=(const Foundation&) = delete;
    };

    ShellServices() = default;

private:
    class UserInterface
    {
    public:
        UserInterface();
        ~UserInterface();
        UserInterface(const UserInterface&) = delete;
        UserInterface& operator=(const UserInterface&) = delete;
    };

    ApplicationUse mApplication;
    Foundation mFoundation;
    UserInterface mUserInterface;
    ModalHooks mModalHooks;
};
