#include "apps/host_check/WatchedHost.h"

#include "plugin/boundary/BoundaryText.h"

#include <numeric>

namespace
{
using Table = hopbox_host_table;

WatchedHost* watched = nullptr;

// An operation that gives a handle by its last pointer.
template <auto operation>
struct Watch;

template <class... Parameters, int32_t (*Table::*operation)(void*, Parameters...)>
struct Watch<operation>
{
    static int32_t Call(void* host, Parameters... parameters)
    {
        const int32_t result = (WatchedHost::GetOriginal().*operation)(host, parameters...);
        if (result == HOPBOX_OK)
            (WatchedHost::Note(parameters), ...);
        return result;
    }
    static void Put(Table& table)
    {
        if (table.*operation != nullptr)
            table.*operation = Call;
    }
};

void Release(void* host, hopbox_handle handle)
{
    WatchedHost::NoteRelease(handle);
    if (WatchedHost::GetOriginal().release != nullptr)
        WatchedHost::GetOriginal().release(host, handle);
}
}  // namespace

WatchedHost::WatchedHost(const Table& table, void* host) : mHost(host)
{
    Boundary::Copy(&table, mOriginal);
    mTable = mOriginal;
    mTable.size = sizeof mTable;
    mTable.release = ::Release;
    Watch<&Table::get_front_document>::Put(mTable);
    Watch<&Table::find_open_document>::Put(mTable);
    Watch<&Table::open_document>::Put(mTable);
    Watch<&Table::get_active_book>::Put(mTable);
    Watch<&Table::create_command>::Put(mTable);
    watched = this;
}

WatchedHost::~WatchedHost()
{
    watched = nullptr;
}

void WatchedHost::Release(hopbox_handle handle) const
{
    mTable.release(mHost, handle);
}

int WatchedHost::GetHandleCount() const
{
    return std::accumulate(mHandles.begin(), mHandles.end(), 0);
}

const Table& WatchedHost::GetOriginal()
{
    return watched->mOriginal;
}

void WatchedHost::Note(hopbox_handle* handle)
{
    ++watched->mHandles[*handle];
}

void WatchedHost::NoteRelease(hopbox_handle handle)
{
    --watched->mHandles[handle];
}
