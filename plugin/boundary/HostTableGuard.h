#pragma once

#include "foundation/trace/GTrace.h"
#include "plugin/boundary/HostTable.h"
#include "plugin/host/HostFault.h"

// The frame of every function of the table: the object behind the host's pointer, and nothing raised past it.
template <class Body>
int32_t Guard(void* host, const Body& body) noexcept
{
    int32_t result = HOPBOX_FAILED;
    HostFault::Contain("HostTable", [&] { result = body(*static_cast<HostTable*>(host)); });
    return result;
}

inline hopbox_result ToResult(ErrorCode code)
{
    return code == cSuccess ? HOPBOX_OK : HOPBOX_FAILED;
}
