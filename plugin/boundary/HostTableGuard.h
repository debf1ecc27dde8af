#pragma once

#include "foundation/trace/GTrace.h"
#include "plugin/boundary/HostTable.h"
#include "plugin/host/HostFault.h"

#include <stdexcept>

// The frame of every function of the table: the object behind the host's pointer, and nothing raised past it.
template <class Body>
int32_t Guard(void* host, const Body& body) noexcept
{
    int32_t result = HOPBOX_FAILED;
    HostFault::Contain("HostTable", [&] { result = body(*static_cast<HostTable*>(host)); });
    return result;
}

// Where the module wants its answer; raises where it names no place.
template <class Value>
Value& Out(Value* place)
{
    if (place == nullptr)
        throw std::invalid_argument("An operation at the boundary was given no place for its answer.");
    return *place;
}

// Told of the user's cancelling while an operation runs.
class CancelWatch final : private ICancelObserver
{
public:
    explicit CancelWatch(IHostServices& services) : mServices(services)
    {
        HostFault::Contain("HostTable", [this] { mServices.SetCancelObserver(this); });
    }
    ~CancelWatch()
    {
        HostFault::Contain("HostTable", [this] { mServices.SetCancelObserver(nullptr); });
    }
    CancelWatch(const CancelWatch&) = delete;
    CancelWatch& operator=(const CancelWatch&) = delete;

    bool IsCancelled() const { return mIsCancelled; }

private:
    void OnCommandCancelled() override { mIsCancelled = true; }

    IHostServices& mServices;
    bool mIsCancelled = false;
};

// The frame of a function that runs a command of the host's, or may: HOPBOX_CANCELLED where the user has
// cancelled meanwhile, whatever else it gave or raised.
template <class Body>
int32_t GuardCommand(void* host, const Body& body) noexcept
{
    return Guard(host, [&](HostTable& table) {
        const CancelWatch watch(table.GetServices());
        int32_t result = HOPBOX_FAILED;
        HostFault::Contain("HostTable", [&] { result = body(table, watch); });
        return watch.IsCancelled() ? int32_t(HOPBOX_CANCELLED) : result;
    });
}

inline hopbox_result ToResult(ErrorCode code)
{
    return code == cSuccess ? HOPBOX_OK : HOPBOX_FAILED;
}
