#pragma once

#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPExportBookAction.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/shell/ShellServices.h"

#include <functional>

// The owner of the plug-in's actions: brings up what they stand on, and answers the host's menu choices and
// its questions about menu entries. Nothing that goes wrong in here leaves it: the user sees an alert.
//
// One action runs at a time in a process, also where two modules of this kind live in it: their windows and
// their Qt are the same. A host whose menus still answer while a dialog is open, or while a command runs,
// may call DoAction again; that brings the open window to the front and does nothing else.
class GIDCSPActionComponent : public CActionComponent
{
public:
    // Runs the selection dialog, modally, under a title and on an export tool, and returns when it is closed.
    using DialogRunner = std::function<void(const GString& title, GCPTSaveAsTool& tool)>;

    // Raises what the services raise (ShellServices). Without a runner, a choice of an export action is
    // answered with an alert.
    explicit GIDCSPActionComponent(DialogRunner runDialog);
    ~GIDCSPActionComponent() override;

    void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) override;
    void UpdateActionStates(IActiveContext* context, IActionStateList& states) override;
    ExportResult Export(ActionID action, const ExportChoices& choices, PMString& error) override;

    // Whether an action runs, or the host is asked for the states of the entries, now. The component must
    // stay until that has ended.
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
