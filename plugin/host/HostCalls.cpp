#include "plugin/host/HostCalls.h"

#include "plugin/host/HostFault.h"

static IHostServices* services = nullptr;

void HostServices::Set(IHostServices* hostServices)
{
    services = hostServices;
}

IHostServices* HostServices::Get()
{
    return services;
}

HostPtr<ISession> GetExecutionContextSession()
{
    return services == nullptr ? HostPtr<ISession>() : services->QuerySession();
}

HostPtr<IUnitOfMeasureSettings> QueryPreferences(InterfaceID preferences, IActiveContext* context)
{
    if (services == nullptr || preferences != HostInterfaceID::cUnitPreferences)
        return {};
    return services->QueryUnitPreferences(context);
}

HostPtr<IObjectModel> GetObjectModelInstance()
{
    return services == nullptr ? HostPtr<IObjectModel>() : services->QueryObjectModel();
}

template <>
HostPtr<ILayoutUtils> UtilsBoss::QueryUtils<ILayoutUtils>()
{
    return services == nullptr ? HostPtr<ILayoutUtils>() : services->QueryLayoutUtils();
}

template <>
HostPtr<IDocumentUtils> UtilsBoss::QueryUtils<IDocumentUtils>()
{
    return services == nullptr ? HostPtr<IDocumentUtils>() : services->QueryDocumentUtils();
}

template <>
HostPtr<IModalUtils> UtilsBoss::QueryUtils<IModalUtils>()
{
    return services == nullptr ? HostPtr<IModalUtils>() : services->QueryModalUtils();
}

HostPtr<ICommand> CmdUtils::CreateCommand(ClassID command)
{
    return services == nullptr ? HostPtr<ICommand>() : services->CreateCommand(command);
}

ErrorCode CmdUtils::ProcessCommand(ICommand& command)
{
    return services == nullptr ? cFailure : services->ProcessCommand(command);
}

// Without an observer, a command can't be cancelled; it can be run.
CmdUtils::CancelScope::CancelScope(ICancelObserver& observer)
{
    if (services != nullptr)
        HostFault::Contain("CmdUtils::CancelScope", [&] { services->SetCancelObserver(&observer); });
}

CmdUtils::CancelScope::~CancelScope()
{
    if (services != nullptr)
        HostFault::Contain("CmdUtils::CancelScope", [] { services->SetCancelObserver(nullptr); });
}

int32_t CAlert::ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                           const PMString& button3, int32_t defaultButton, int32_t cancelButton)
{
    if (services == nullptr)
        return 0;
    return services->ModalAlert(text, button1, button2, button3, defaultButton, cancelButton);
}
