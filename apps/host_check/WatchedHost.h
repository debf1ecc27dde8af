#pragma once

#include "plugin/boundary/hopbox_host.h"

#include <QMap>

// The table of the adaptor under test, with a count of its handles in between. One at a time, as the
// functions of a table know nothing but the host's own pointer.
class WatchedHost
{
public:
    WatchedHost(const hopbox_host_table& table, void* host);
    ~WatchedHost();
    WatchedHost(const WatchedHost&) = delete;
    WatchedHost& operator=(const WatchedHost&) = delete;

    const hopbox_host_table& GetTable() const { return mTable; }
    void* GetHost() const { return mHost; }

    // Calls an operation; HOPBOX_UNSUPPORTED where the adaptor has none.
    template <class... Parameters, class... Arguments>
    int32_t Call(int32_t (*hopbox_host_table::*operation)(void*, Parameters...), Arguments... arguments) const
    {
        return mTable.*operation == nullptr ? int32_t(HOPBOX_UNSUPPORTED)
                                            : (mTable.*operation)(mHost, arguments...);
    }

    void Release(hopbox_handle handle) const;

    // Handles that were given and not given back.
    int GetHandleCount() const;

    // For the functions of the table.
    static const hopbox_host_table& GetOriginal();
    static void Note(hopbox_handle* handle);
    static void Note(...) {}
    static void NoteRelease(hopbox_handle handle);

private:
    hopbox_host_table mOriginal;
    hopbox_host_table mTable;
    void* mHost;
    QMap<hopbox_handle, int> mHandles;
};
