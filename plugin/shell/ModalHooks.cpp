#include "plugin/shell/ModalHooks.h"

#include "plugin/host/HostCalls.h"
#include "plugin/shell/HostWindow.h"
#include "widgets/GCUSModal.h"

namespace
{
// The host's token while a window is modal.
ModalToken heldToken = cNoModalToken;

void BeforeModal()
{
    if (const HostPtr<IModalUtils> modal = UtilsBoss::QueryUtils<IModalUtils>())
        heldToken = modal->AcquireModalToken();
}

void AfterModal()
{
    if (heldToken == cNoModalToken)
        return;
    if (const HostPtr<IModalUtils> modal = UtilsBoss::QueryUtils<IModalUtils>())
        modal->HandBackModalToken(heldToken);
    heldToken = cNoModalToken;
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
