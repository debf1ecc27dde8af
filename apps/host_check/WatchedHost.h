#pragma once

#include "plugin/boundary/hopbox_host.h"

#include <QSet>
#include <QString>

// The table of the adaptor under test, with a look at its handles in between. One at a time, as the functions
// of a table know nothing but the host's own pointer.
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

    // Whether the host has commands of a kind.
    bool Makes(int32_t kind) const;

    // The operations that gave no handle with HOPBOX_OK, or one without it.
    const QSet<QString>& GetFaulty() const { return mFaulty; }

    // For the functions of the table.
    static const hopbox_host_table& GetOriginal();
    static void NoteFault(const char* operation);

private:
    hopbox_host_table mOriginal;
    hopbox_host_table mTable;
    void* mHost;
    QSet<QString> mFaulty;
};
