#include "plugin/boundary/PlugInTable.h"

#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/TableHost.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/host/HostFault.h"
#include "plugin/host/IPlugIn.h"

#include <atomic>
#include <memory>
#include <thread>

namespace
{
IPlugIn* plugIn = nullptr;
PlugInTable::Translator translate = nullptr;
const char* const cBadChoices = QT_TRANSLATE_NOOP("RefusalText", "The host's choices can't be read.");
const char* const cBadTable =
    QT_TRANSLATE_NOOP("RefusalText", "The plug-in needs version %1 of the host's table.");
IActionComponent* actions = nullptr;
std::atomic<std::thread::id> hostThread;  // the one that gave the table; none without a host

// Never destroyed: a host may end without unloading.
std::unique_ptr<TableHost>& GetHost()
{
    static auto* const host = new std::unique_ptr<TableHost>;
    return *host;
}

template <class Body>
int32_t Guard(const Body& body) noexcept
{
    const std::thread::id thread = hostThread;
    if (thread != std::thread::id() && thread != std::this_thread::get_id())
        return HOPBOX_WRONG_THREAD;
    int32_t result = HOPBOX_FAILED;
    HostFault::Contain("hopbox_plugin_table", [&] { result = body(); });
    return result;
}

hopbox_result Refuse(const hopbox_sink* error, const GString& reason)
{
    Boundary::Put(error, reason);
    return HOPBOX_FAILED;
}

int32_t Load(const hopbox_host_table* table, void* host, const hopbox_sink* error)
{
    return Guard([&] {
        hopbox_host_table copy;
        if (!Boundary::Copy(table, copy))
            return Refuse(error, translate("RefusalText", cBadTable).arg(HOPBOX_VERSION));
        auto services = std::make_unique<TableHost>(copy, host);
        PMString reason;
        if (!plugIn->Load(services.get(), reason))
            return Refuse(error, reason.GetString());
        GetHost() = std::move(services);
        hostThread = std::this_thread::get_id();
        return HOPBOX_OK;
    });
}

int32_t OpenActions(const hopbox_sink* error)
{
    return Guard([&] {
        PMString reason;
        IActionComponent* opened = plugIn->CreateActionComponent(reason);
        if (opened == nullptr)
            return Refuse(error, reason.GetString());
        actions = opened;
        return HOPBOX_OK;
    });
}

int32_t Startup()
{
    return Guard([] {
        IStartupShutdownService* service = plugIn->GetStartupShutdownService();
        if (service == nullptr)
            return HOPBOX_NONE;
        service->Startup();
        return HOPBOX_OK;
    });
}

int32_t Shutdown()
{
    return Guard([] {
        IStartupShutdownService* service = plugIn->GetStartupShutdownService();
        if (service == nullptr)
            return HOPBOX_NONE;
        service->Shutdown();
        return HOPBOX_OK;
    });
}

int32_t CloseActions()
{
    return Guard([] {
        if (!plugIn->ReleaseActionComponent())
            return HOPBOX_BUSY;
        actions = nullptr;
        return HOPBOX_OK;
    });
}

int32_t Unload()
{
    return Guard([] {
        if (!plugIn->Unload())
            return HOPBOX_BUSY;
        actions = nullptr;
        GetHost().reset();
        hostThread = std::thread::id();
        return HOPBOX_OK;
    });
}

// A list of one entry that keeps what it is set to.
class OneState final : public IActionStateList
{
public:
    explicit OneState(ActionID action) : mAction(action) {}

    int32_t Length() const override { return 1; }
    ActionID GetNthAction(int32_t) const override { return mAction; }
    void SetNthActionEnabled(int32_t, bool isEnabled) override
    {
        isSet = true;
        isOn = isEnabled;
    }
    void SetNthActionName(int32_t, const PMString& text) override { name = text.GetString(); }
    void SetNthActionShortcut(int32_t, const PMString& text) override { shortcut = text.GetString(); }

    bool isSet = false;
    bool isOn = false;
    GString name;
    GString shortcut;

private:
    ActionID mAction;
};

int32_t GetActionState(int32_t action, int32_t* isOn, const hopbox_sink* name, const hopbox_sink* shortcut)
{
    return Guard([&] {
        OneState state(action);
        if (actions != nullptr)
            actions->UpdateActionStates(nullptr, state);
        if (!state.isSet)
            return HOPBOX_NONE;
        if (isOn != nullptr)
            *isOn = state.isOn;
        Boundary::Put(name, state.name);
        Boundary::Put(shortcut, state.shortcut);
        return HOPBOX_OK;
    });
}

int32_t DoAction(int32_t action)
{
    return Guard([&] {
        if (actions == nullptr)
            return HOPBOX_NONE;
        actions->DoAction(nullptr, action, nullptr);
        return HOPBOX_OK;
    });
}

int32_t GetResourceFolder(const hopbox_sink* path)
{
    return Guard([&] {
        ResourceFileInfo info;
        if (!plugIn->GetResourceAccess().GetResourceFile(info))
            return HOPBOX_FAILED;
        Boundary::Put(path, FileUtils::SysFileToPMString(info.file).GetString());
        return HOPBOX_OK;
    });
}

int32_t ToResult(ExportResult result)
{
    switch (result) {
        case ExportResult::Done:
            return HOPBOX_OK;
        case ExportResult::Cancelled:
            return HOPBOX_CANCELLED;
        case ExportResult::Busy:
            return HOPBOX_BUSY;
        case ExportResult::Unsupported:
            return HOPBOX_UNSUPPORTED;
        case ExportResult::Failed:
            break;
    }
    return HOPBOX_FAILED;
}

int32_t ExportTo(int32_t action, const hopbox_text* hopbox, const hopbox_text* pages, int32_t includesPackage,
                 const hopbox_sink* error)
{
    return Guard([&] {
        if (actions == nullptr)
            return int32_t(HOPBOX_NONE);
        ExportChoices choices;
        bool isRead = false;
        HostFault::Contain("hopbox_plugin_table::export_to", [&] {
            choices.hopbox = PMString::Untranslated(Boundary::Read(hopbox));
            if (pages != nullptr)
                choices.pages = PMString::Untranslated(Boundary::Read(pages));
            isRead = true;
        });
        if (!isRead)
            return int32_t(Refuse(error, translate("RefusalText", cBadChoices)));
        if (includesPackage != HOPBOX_AS_SET)
            choices.includesPackage = includesPackage != 0;
        PMString reason;
        const ExportResult result = actions->Export(action, choices, reason);
        if (result == ExportResult::Failed)
            Boundary::Put(error, reason.GetString());
        return ToResult(result);
    });
}
}  // namespace

const hopbox_plugin_table* PlugInTable::Get(uint32_t version, IPlugIn& object, Translator translator)
{
    static const hopbox_plugin_table table = {
        sizeof table, HOPBOX_VERSION, Load,           OpenActions, Startup,           Shutdown,
        CloseActions, Unload,         GetActionState, DoAction,    GetResourceFolder, ExportTo};
    if (version != HOPBOX_VERSION)
        return nullptr;
    plugIn = &object;
    translate = translator;
    return &table;
}
