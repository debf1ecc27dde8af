#pragma once

#include "plugin/host/IHostServices.h"

// The host's functions under their own names. Each only calls the services that the host gave. Without
// services each function finds nothing, or fails, so the plug-in's code needs no special case for a missing
// host. For the host's main thread.

// The services that these functions call.
class HostServices
{
public:
    // Null takes the services away. This class does not own them.
    static void Set(IHostServices* services);
    static IHostServices* Get();
};

HostPtr<ISession> GetExecutionContextSession();

// The preferences of an interface identifier. There is one kind, HostInterfaceID::cUnitPreferences; any other
// identifier finds nothing.
HostPtr<IUnitOfMeasureSettings> QueryPreferences(InterfaceID preferences, IActiveContext* context);

HostPtr<IObjectModel> GetObjectModelInstance();

class UtilsBoss
{
public:
    // A utility interface by its type, which contains the identifier: ILayoutUtils, IDocumentUtils,
    // IModalUtils.
    template <class Utils>
    static HostPtr<Utils> QueryUtils();
};

template <>
HostPtr<ILayoutUtils> UtilsBoss::QueryUtils<ILayoutUtils>();
template <>
HostPtr<IDocumentUtils> UtilsBoss::QueryUtils<IDocumentUtils>();
template <>
HostPtr<IModalUtils> UtilsBoss::QueryUtils<IModalUtils>();

class CmdUtils
{
public:
    // A command of a class (HostClassID), or none.
    static HostPtr<ICommand> CreateCommand(ClassID command);

    // Runs a command; zero on success.
    static ErrorCode ProcessCommand(ICommand& command);

    // While this object lives, the observer is told when the user cancels. Only one at a time.
    class CancelScope
    {
    public:
        explicit CancelScope(ICancelObserver& observer);
        ~CancelScope();
        CancelScope(const CancelScope&) = delete;
        CancelScope& operator=(const CancelScope&) = delete;
    };
};

class CAlert
{
public:
    // Shows an alert and gives the number of the button that closed it; 0 when it could not be shown.
    static int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                              const PMString& button3, int32_t defaultButton, int32_t cancelButton);
};
