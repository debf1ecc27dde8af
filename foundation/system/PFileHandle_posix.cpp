#include "foundation/system/PFileHandle.h"

#include <unistd.h>

#include <cerrno>

bool PFileHandle::Close() noexcept
{
    if (!IsOpen())
        return true;
    // An interrupted close has closed the descriptor on Linux; a second one could hit another thread's file.
    return close(static_cast<int>(Release())) == 0 || errno == EINTR;
}
