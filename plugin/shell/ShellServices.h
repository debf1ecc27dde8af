#pragma once

#include "plugin/shell/ApplicationUse.h"
#include "plugin/shell/ModalHooks.h"

// Everything that the plug-in's actions need: the application, the foundation, the plug-in's folders and
// settings, its texts and alerts, and the hooks for its windows. They are started in this order when the
// object is made, and ended in reverse order when it is deleted. If a step raises, the steps before it are
// undone and the exception is passed on.
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
