#pragma once

#include "apps/host_check/WatchedHost.h"

// A handle that goes back at the end of the scope, or before.
class HeldHandle
{
public:
    explicit HeldHandle(const WatchedHost& host) : mHost(host) {}
    ~HeldHandle() { GiveBack(); }
    HeldHandle(const HeldHandle&) = delete;
    HeldHandle& operator=(const HeldHandle&) = delete;

    void GiveBack()
    {
        if (value != 0)
            mHost.Release(value);
        value = 0;
    }

    hopbox_handle value = 0;

private:
    const WatchedHost& mHost;
};
