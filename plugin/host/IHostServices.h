#pragma once

#include "plugin/host/IApplication.h"
#include "plugin/host/ICommand.h"
#include "plugin/host/IHostUtils.h"
#include "plugin/host/IPackage.h"

// What the host was doing when it called the plug-in. The plug-in only passes it on; the host owns it.
class IActiveContext;

// Everything that the plug-in can ask of its host, in one object. The host gives this object when it loads
// the plug-in.
//
// The plug-in's code does not see this class: it calls the functions in HostCalls.h. An adaptor implements
// this class, and the classes of the objects that it gives, with the calls of its host; docs/host-adaptor.md
// says how. Every call comes on the host's main thread. No call raises. The caller gets a reference with each
// object, and every operation that gives an object may give an empty handle instead.
class IHostServices
{
public:
    // The version of this interface and of all classes that it uses. It changes whenever one of them does,
    // and a plug-in refuses services of another version.
    static constexpr int32_t cVersion = 3;

    // The version that the adaptor was built with: cVersion. It is the first function of the class in every
    // version.
    virtual int32_t GetVersion() const = 0;

    // Host: GetExecutionContextSession.
    virtual HostPtr<ISession> QuerySession() = 0;

    // Host: QueryPreferences(4610, active context). If the context is null, these are the application's
    // settings.
    virtual HostPtr<IUnitOfMeasureSettings> QueryUnitPreferences(IActiveContext* context) = 0;

    // Host: UtilsBoss::QueryUtils with 118846, 351 and 1665.
    virtual HostPtr<ILayoutUtils> QueryLayoutUtils() = 0;
    virtual HostPtr<IDocumentUtils> QueryDocumentUtils() = 0;
    virtual HostPtr<IModalUtils> QueryModalUtils() = 0;

    // Host: CmdUtils::CreateCommand. Empty for a class for which the host has no command.
    virtual HostPtr<ICommand> CreateCommand(ClassID command) = 0;

    // Runs a command to its end. Host: CmdUtils::ProcessCommand.
    virtual ErrorCode ProcessCommand(ICommand& command) = 0;

    // Sets who is told when the user cancels a running command; null for nobody. The plug-in takes its
    // observer back before it is unloaded. Host: no such call; the adaptor asks its progress window, or asks
    // for the host's error state when the command has returned.
    virtual void SetCancelObserver(ICancelObserver* observer) = 0;

    // Host: GetObjectModelInstance.
    virtual HostPtr<IObjectModel> QueryObjectModel() = 0;

    // Shows an alert and gives the number of the button that closed it: 1, 2 or 3. A button without a text
    // is not shown. Host: CAlert::ModalAlert.
    virtual int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                               const PMString& button3, int32_t defaultButton, int32_t cancelButton) = 0;

protected:
    ~IHostServices() = default;
};
