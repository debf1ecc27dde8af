#include "apps/host_check/WatchedHost.h"

#include "plugin/boundary/BoundaryText.h"

namespace
{
using Table = hopbox_host_table;

WatchedHost* watched = nullptr;

// What a parameter leads to, where it is a handle.
hopbox_handle GetGiven(const hopbox_handle* handle)
{
    return *handle;
}
hopbox_handle GetGiven(...)
{
    return 0;
}

// An operation that gives a handle by its last pointer.
template <auto operation>
struct Watch;

template <class... Parameters, int32_t (*Table::*operation)(void*, Parameters...)>
struct Watch<operation>
{
    static int32_t Call(void* host, Parameters... parameters)
    {
        const hopbox_handle before = (GetGiven(parameters) + ...);
        const int32_t result = (WatchedHost::GetOriginal().*operation)(host, parameters...);
        const hopbox_handle after = (GetGiven(parameters) + ...);
        if (result == HOPBOX_OK ? after == 0 : after != before)
            WatchedHost::NoteFault(name);
        return result;
    }
    static void Put(Table& table, const char* operationName)
    {
        name = operationName;
        if (table.*operation != nullptr)
            table.*operation = Call;
    }

    static inline const char* name = nullptr;
};
}  // namespace

WatchedHost::WatchedHost(const Table& table, void* host) : mHost(host)
{
    static_cast<void>(Boundary::Copy(&table, mOriginal));  // another version is a fault that is told
    mTable = mOriginal;
    mTable.size = sizeof mTable;
    Watch<&Table::get_front_document>::Put(mTable, "get_front_document");
    Watch<&Table::find_open_document>::Put(mTable, "find_open_document");
    Watch<&Table::open_document>::Put(mTable, "open_document");
    Watch<&Table::get_active_book>::Put(mTable, "get_active_book");
    Watch<&Table::create_command>::Put(mTable, "create_command");
    watched = this;
}

WatchedHost::~WatchedHost()
{
    watched = nullptr;
}

void WatchedHost::Release(hopbox_handle handle) const
{
    if (mTable.release != nullptr)
        mTable.release(mHost, handle);
}

bool WatchedHost::Makes(int32_t kind) const
{
    hopbox_handle command = 0;
    const int32_t result = Call(&Table::create_command, kind, &command);
    if (result == HOPBOX_OK && command != 0)
        Release(command);
    return result != HOPBOX_UNSUPPORTED;
}

const Table& WatchedHost::GetOriginal()
{
    return watched->mOriginal;
}

void WatchedHost::NoteFault(const char* operation)
{
    watched->mFaulty.insert(QString::fromLatin1(operation));
}
