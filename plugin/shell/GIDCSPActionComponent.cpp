#include "plugin/shell/GIDCSPActionComponent.h"

#include "export/BookSource.h"
#include "export/DocumentSource.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"
#include "plugin/shell/DefaultUnit.h"
#include "widgets/GCUSTranslation.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <QWidget>

using GCUSTranslation::Translate;

namespace
{
// A document's page range keeps its default; a book has none.
const DialogOptions cDocumentOptions = {{DialogOption::cSlugArea, true},
                                        {DialogOption::cSpreads, true},
                                        {DialogOption::cBleedMark, true},
                                        {DialogOption::cMarkWeight, true},
                                        {DialogOption::cFilePackage, true}};
const DialogOptions cBookOptions = {{DialogOption::cSlugArea, true},    {DialogOption::cSpreads, true},
                                    {DialogOption::cBleedMark, true},   {DialogOption::cMarkWeight, true},
                                    {DialogOption::cFilePackage, true}, {DialogOption::cPageRange, false}};

void ShowError(const GString& text)
{
    GTrace::Error(QStringLiteral("GIDCSPActionComponent"), text);
    if (GUserMessage* message = GUserMessage::GetInstance())
        message->ShowErrorMessage(GStringPool::GetString(PlugInMessage::cExportErrorTitle), text);
}

bool HasFrontDocument()
{
    return static_cast<bool>(DocumentSource::QueryFront());
}

bool HasActiveBook()
{
    const HostPtr<IBook> book = BookSource::QueryActive();
    return book && BookSource::HasDocuments(*book);
}

// An entry of which the host can't tell is off.
bool IsAvailable(bool (*question)())
{
    bool isAvailable = false;
    HostFault::Contain("GIDCSPActionComponent", [&] { isAvailable = question(); });
    return isAvailable;
}

// Tells the other modules in this process that an action runs. They have the application in common.
class RunningAction
{
public:
    RunningAction() { qApp->setProperty(cName, true); }
    ~RunningAction()
    {
        if (qApp != nullptr)
            qApp->setProperty(cName, false);
    }
    RunningAction(const RunningAction&) = delete;
    RunningAction& operator=(const RunningAction&) = delete;

    static bool IsThere() { return qApp->property(cName).toBool(); }

private:
    static constexpr const char* cName = "HopboxPlugInAction";
};

// While an export runs the dialog is gone from the screen, and the window may be an alert or the host's own.
void BringModalWindowToFront()
{
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr)
        return;
    window->setWindowState(window->windowState() & ~Qt::WindowMinimized);
    window->raise();
    window->activateWindow();
}

// Has the tool take the Hopbox that the user means; only those that the dialog lists count.
bool ChooseHopbox(GCPTSaveAsTool& tool, const GString& name)
{
    const HopboxRegistry registry;
    const GString key = registry.FindKey(name);
    const std::optional<HopboxRecord> record = registry.GetRecord(key);
    if (!record || !record->entry.isPlugin)
        return false;
    static_cast<void>(tool.SelectPDFSetting(key, *record));  // the export tells why it fails
    return true;
}

// Runs the export that was chosen. Gives the text of its alert, empty for none.
GString Submit(GCPTSaveAsTool& tool, const ExportChoices& choices)
{
    const GString& hopbox = choices.hopbox.GetString();
    if (!ChooseHopbox(tool, hopbox))
        return ErrorText::GetSettingNotFound(hopbox);
    if (!choices.pages.IsEmpty())
        tool.SetPageRange(choices.pages.GetString());
    if (choices.includesPackage)
        tool.GetSettings().Set(HopboxProject::GetPlugInGroup(), QByteArrayLiteral("IncludeFilePackage"),
                               GStringSupport::FromBool(*choices.includesPackage));
    GString alert;
    tool.SetAlertTaker([&alert](const GString& text) { alert = text; });
    tool.Submit();
    return alert;
}

void SetState(IActionStateList& states, int32_t index, bool isEnabled, const GString& name,
              const GString& shortcut)
{
    states.SetNthActionEnabled(index, isEnabled);
    states.SetNthActionName(index, PMString::Untranslated(name));
    states.SetNthActionShortcut(index, PMString::Untranslated(shortcut));
}
}  // namespace

GIDCSPActionComponent::GIDCSPActionComponent(DialogRunner runDialog) : mRunDialog(std::move(runDialog))
{
    mDocumentAction.SetActive(false);
    mBookAction.SetActive(false);
}

GIDCSPActionComponent::~GIDCSPActionComponent() = default;

void GIDCSPActionComponent::DoAction(IActiveContext* context, ActionID action, IHostObject*)
{
    if (RunningAction::IsThere()) {
        BringModalWindowToFront();
        return;
    }
    const RunningAction running;
    const QScopedValueRollback<bool> busy(mIsBusy, true);
    try {
        Dispatch(context, action);
    } catch (...) {
        ShowError(ErrorText::DescribeCurrent());
    }
}

void GIDCSPActionComponent::Dispatch(IActiveContext* context, ActionID action)
{
    if (action == PlugInID::cAboutAction)
        ShowAbout();
    else if (action == PlugInID::cDocumentAction)
        RunDialog(context, mDocumentAction, cDocumentOptions);
    else if (action == PlugInID::cBookAction)
        RunDialog(context, mBookAction, cBookOptions);
}

void GIDCSPActionComponent::UpdateActionStates(IActiveContext*, IActionStateList& states)
{
    const QScopedValueRollback<bool> asking(mIsAsking, true);
    HostFault::Contain("GIDCSPActionComponent::UpdateActionStates", [&] {
        for (int32_t index = 0; index < states.Length(); ++index)
            UpdateState(states, index);
    });
}

void GIDCSPActionComponent::UpdateState(IActionStateList& states, int32_t index) const
{
    const ActionID action = states.GetNthAction(index);
    if (action == PlugInID::cDocumentAction)
        SetState(states, index, IsAvailable(HasFrontDocument), mDocumentAction.GetMenuName(),
                 QStringLiteral("Alt+Shift+E"));
    else if (action == PlugInID::cBookAction)
        SetState(states, index, IsAvailable(HasActiveBook), mBookAction.GetMenuName(),
                 QStringLiteral("Alt+Shift+B"));
}

void GIDCSPActionComponent::ShowAbout() const
{
    constexpr int32_t cOK = 1;
    const QChar copyright(0xA9);
    const GString text =
        Translate("GIDCSPActionComponent",
                  "Export to Hopbox 18, %1 2026 the Hopbox plug-in authors. All rights reserved.")
            .arg(copyright);
    CAlert::ModalAlert(PMString::Untranslated(text), PMString::Untranslated(QStringLiteral("OK")), PMString(),
                       PMString(), cOK, cOK);
}

void GIDCSPActionComponent::RunDialog(IActiveContext* context, GCPTSaveAsAction& action,
                                      const DialogOptions& options)
{
    if (!mRunDialog) {
        ShowError(Translate("GIDCSPActionComponent", "The dialog for the export is not installed."));
        return;
    }
    action.SetActive(true);
    TakeDefaultUnit(context);
    GCPTSaveAsTool tool(action, options);
    mRunDialog(action.GetTitle(), tool);
}

ExportResult GIDCSPActionComponent::Export(ActionID actionID, const ExportChoices& choices, PMString& error)
{
    const bool isBook = actionID == PlugInID::cBookAction;
    if ((!isBook && actionID != PlugInID::cDocumentAction) || (isBook && !choices.pages.IsEmpty()))
        return ExportResult::Unsupported;
    if (RunningAction::IsThere())
        return ExportResult::Busy;
    const RunningAction running;
    const QScopedValueRollback<bool> busy(mIsBusy, true);
    GCPTSaveAsAction& action = isBook ? static_cast<GCPTSaveAsAction&>(mBookAction) : mDocumentAction;
    action.SetActive(true);
    GCPTSaveAsTool tool(action, isBook ? cBookOptions : cDocumentOptions);
    GString alert;
    try {
        alert = Submit(tool, choices);
    } catch (...) {
        alert = ErrorText::DescribeCurrent();
    }
    if (tool.WasCancelled())
        return ExportResult::Cancelled;
    error = PMString::Untranslated(alert);
    return alert.isEmpty() ? ExportResult::Done : ExportResult::Failed;
}
