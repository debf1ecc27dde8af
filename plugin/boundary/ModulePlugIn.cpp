#include "plugin/boundary/ModulePlugIn.h"

#include "plugin/boundary/BoundaryText.h"

#include <QCoreApplication>

using Table = hopbox_plugin_table;

// The text of a refusal; something in any case. The words of this file are in the language of the host that
// shows them.
static PMString TakeReason(const Boundary::TextSink& reason)
{
    const GString text = reason.GetTexts().value(0);
    return PMString::Untranslated(
        text.isEmpty() ? QCoreApplication::translate("ModulePlugIn", "The plug-in gave no reason.") : text);
}

ModulePlugIn::ModulePlugIn(hopbox_entry_function entry)
{
    if (entry != nullptr)
        static_cast<void>(Boundary::Copy(entry(HOPBOX_VERSION), mTable));  // IsServed looks at the copy
}

bool ModulePlugIn::Load(IHostServices* services, PMString& error)
{
    error = PMString();
    if (!IsServed())
        error = PMString::Untranslated(
            QCoreApplication::translate("ModulePlugIn",
                                        "The module does not serve version %1 of the boundary.")
                .arg(HOPBOX_VERSION));
    else if (services == nullptr)
        error = PMString::Untranslated(
            QCoreApplication::translate("ModulePlugIn", "The host gave the plug-in no services."));
    if (!error.IsEmpty())
        return false;
    auto host = std::make_unique<HostTable>(*services);
    const Boundary::TextSink reason;
    if (Call(&Table::load, &HostTable::GetTable(), static_cast<void*>(host.get()),
             static_cast<const hopbox_sink*>(reason)) != HOPBOX_OK) {
        error = TakeReason(reason);
        return false;
    }
    mHost = std::move(host);
    return true;
}

bool ModulePlugIn::Unload()
{
    if (!mHost)
        return true;
    if (Call(&Table::unload) != HOPBOX_OK)
        return false;
    mHost.reset();
    return true;
}

IStartupShutdownService* ModulePlugIn::GetStartupShutdownService()
{
    return mHost ? this : nullptr;
}

IActionComponent* ModulePlugIn::CreateActionComponent(PMString& error)
{
    error = PMString();
    const Boundary::TextSink reason;
    if (Call(&Table::open_actions, static_cast<const hopbox_sink*>(reason)) == HOPBOX_OK)
        return this;
    error = TakeReason(reason);
    return nullptr;
}

bool ModulePlugIn::ReleaseActionComponent()
{
    return Call(&Table::close_actions) == HOPBOX_OK;
}

void ModulePlugIn::DoAction(IActiveContext*, ActionID action, IHostObject*)
{
    Call(&Table::do_action, action);
}

void ModulePlugIn::UpdateActionStates(IActiveContext*, IActionStateList& states)
{
    for (int32_t index = 0; index < states.Length(); ++index) {
        int32_t isOn = 0;
        const Boundary::TextSink name;
        const Boundary::TextSink shortcut;
        if (Call(&Table::get_action_state, states.GetNthAction(index), &isOn,
                 static_cast<const hopbox_sink*>(name),
                 static_cast<const hopbox_sink*>(shortcut)) != HOPBOX_OK)
            continue;
        states.SetNthActionEnabled(index, isOn != 0);
        states.SetNthActionName(index, PMString::Untranslated(name.GetTexts().value(0)));
        states.SetNthActionShortcut(index, PMString::Untranslated(shortcut.GetTexts().value(0)));
    }
}

ExportResult ModulePlugIn::Export(ActionID action, const ExportChoices& choices, PMString& error)
{
    const Boundary::PassedText hopbox(choices.hopbox.GetString());
    const Boundary::PassedText pages(choices.pages.GetString());
    const hopbox_text* chosenPages = choices.pages.IsEmpty() ? nullptr : &pages.Get();
    const int32_t package = choices.includesPackage ? int32_t(*choices.includesPackage) : HOPBOX_AS_SET;
    const Boundary::TextSink reason;
    switch (Call(&Table::export_to, action, &hopbox.Get(), chosenPages, package,
                 static_cast<const hopbox_sink*>(reason))) {
        case HOPBOX_OK:
            return ExportResult::Done;
        case HOPBOX_CANCELLED:
            return ExportResult::Cancelled;
        case HOPBOX_BUSY:
            return ExportResult::Busy;
        case HOPBOX_UNSUPPORTED:
            return ExportResult::Unsupported;
        default:
            error = TakeReason(reason);
            return ExportResult::Failed;
    }
}

void ModulePlugIn::Startup()
{
    Call(&Table::startup);
}

void ModulePlugIn::Shutdown()
{
    Call(&Table::shutdown);
}

bool ModulePlugIn::GetResourceFile(ResourceFileInfo& info) const
{
    const Boundary::TextSink path;
    if (Call(&Table::get_resource_folder, static_cast<const hopbox_sink*>(path)) != HOPBOX_OK)
        return false;
    info = {IDFile(PMString(path.GetTexts().value(0))),
            PMString::Untranslated(QStringLiteral("Export to Hopbox"))};
    return true;
}
