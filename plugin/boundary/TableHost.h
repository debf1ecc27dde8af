#pragma once

#include "plugin/boundary/hopbox_host.h"
#include "plugin/host/IHostServices.h"

#include <thread>

// A host as the plug-in knows it, over the table that a host gave at the boundary. What the table lacks is
// answered as hopbox_host.h says; an operation that does not give HOPBOX_OK where its class has no answer for
// that raises, and so ends the step that called it. For the host's main thread.
class TableHost final : public IHostServices
{
public:
    // The table is copied (Boundary::Copy); the pointer goes along with each call.
    TableHost(const hopbox_host_table& table, void* host) : mTable(table), mHost(host) {}
    TableHost(const TableHost&) = delete;
    TableHost& operator=(const TableHost&) = delete;

    // Calls an operation that the export does not depend on. HOPBOX_UNSUPPORTED where the table has none,
    // HOPBOX_WRONG_THREAD on a thread that is not the one of this object's making.
    template <class... Parameters, class... Arguments>
    int32_t CallAside(int32_t (*hopbox_host_table::*operation)(void*, Parameters...),
                      Arguments... arguments) const
    {
        if (mThread != std::this_thread::get_id())
            return HOPBOX_WRONG_THREAD;
        return mTable.*operation == nullptr ? int32_t(HOPBOX_UNSUPPORTED)
                                            : (mTable.*operation)(mHost, arguments...);
    }

    // Calls any other, and tells the observer when the user has cancelled during it: the caller has to fail.
    template <class Operation, class... Arguments>
    int32_t Call(Operation hopbox_host_table::*operation, Arguments... arguments) const
    {
        const int32_t result = CallAside(operation, arguments...);
        if (result == HOPBOX_CANCELLED && mCancelObserver != nullptr)
            mCancelObserver->OnCommandCancelled();
        return result;
    }

    void Release(hopbox_handle handle) const noexcept;
    void EndModal(ModalToken token) const;

    template <class Operation>
    bool Has(Operation hopbox_host_table::*operation) const
    {
        return mTable.*operation != nullptr;
    }

    // Runs a command to its end.
    ErrorCode Run(hopbox_handle command) const;

    int32_t GetVersion() const override { return cVersion; }
    HostPtr<ISession> QuerySession() override;
    HostPtr<IUnitOfMeasureSettings> QueryUnitPreferences(IActiveContext* context) override;
    HostPtr<ILayoutUtils> QueryLayoutUtils() override;
    HostPtr<IDocumentUtils> QueryDocumentUtils() override;
    HostPtr<IModalUtils> QueryModalUtils() override;
    HostPtr<ICommand> CreateCommand(ClassID command) override;
    ErrorCode ProcessCommand(ICommand& command) override;
    void SetCancelObserver(ICancelObserver* observer) override { mCancelObserver = observer; }
    HostPtr<IObjectModel> QueryObjectModel() override;
    int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                       const PMString& button3, int32_t defaultButton, int32_t cancelButton) override;

private:
    hopbox_host_table mTable;
    void* mHost;
    const std::thread::id mThread = std::this_thread::get_id();
    ICancelObserver* mCancelObserver = nullptr;
};
