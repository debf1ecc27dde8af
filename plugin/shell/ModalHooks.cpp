#include "plugin/shell/ModalHooks.h"

#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"
#include "plugin/shell/HostWindow.h"
#include "widgets/GCUSModal.h"

#include <utility>

namespace
{
// The host's token while a window is modal.
ModalToken heldToken = cNoModalToken;

// The window opens also where the host does not rest.
void BeforeModal()
{
    HostFault::Contain("ModalHooks", [] {
        if (const HostPtr<IModalUtils> modal = UtilsBoss::QueryUtils<IModalUtils>())
            heldToken = modal->AcquireModalToken();
    });
}

void AfterModal()
{
    const ModalToken token = std::exchange(heldToken, cNoModalToken);
    if (token == cNoModalToken)
        return;
    HostFault::Contain("ModalHooks", [token] {
        if (const HostPtr<IModalUtils> modal = UtilsBoss::QueryUtils<IModalUtils>())
            modal->HandBackModalToken(token);
    });
}
}  // namespace

ModalHooks::ModalHooks()
{
    GCUSModal::SetHooks(BeforeModal, AfterModal);
    GCUSModal::SetParentWindowProvider(FindHostWindow);
}

ModalHooks::~ModalHooks()
{
    GCUSModal::SetParentWindowProvider({});
    GCUSModal::SetHooks({}, {});
}
