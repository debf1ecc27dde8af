#pragma once

#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPExportBookAction.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/shell/ShellServices.h"

#include <functional>

// The owner of the plug-in's actions: starts what they need, and answers the host's menu choices and its
// questions about menu entries. No exception leaves this class: the user sees an alert.
//
// Only one action runs at a time in a process, even if the process has two modules of this kind, because they
// share windows and Qt. A host whose menus still react while a dialog is open, or while a command runs, may
// call DoAction again. That call only brings the open window to the front.
class GIDCSPActionComponent : public CActionComponent
{
public:
    // Shows the selection dialog for an export tool as a modal window with this title, and returns when the
    // dialog is closed.
    using DialogRunner = std::function<void(const GString& title, GCPTSaveAsTool& tool)>;

    // Raises what the services raise (ShellServices). Without a runner, an export action only shows an alert.
    explicit GIDCSPActionComponent(DialogRunner runDialog);
    ~GIDCSPActionComponent() override;

    void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) override;
    void UpdateActionStates(IActiveContext* context, IActionStateList& states) override;
    ExportResult Export(ActionID action, const ExportChoices& choices, PMString& error) override;

    // Whether an action runs now, or the host is being asked for the states of the entries. The component
    // must stay until that has ended.
    bool IsBusy() const { return mIsBusy || mIsAsking; }

private:
    void UpdateState(IActionStateList& states, int32_t index) const;
    void Dispatch(IActiveContext* context, ActionID action);
    void ShowAbout() const;
    void RunDialog(IActiveContext* context, GCPTSaveAsAction& action, const DialogOptions& options);

    ShellServices mServices;
    DialogRunner mRunDialog;
    GIDCSPSaveAsAction mDocumentAction;
    GIDCSPExportBookAction mBookAction;
    bool mIsBusy = false;    // an action of this component runs
    bool mIsAsking = false;  // for the states of entries
};
