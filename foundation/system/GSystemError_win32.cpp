#include "foundation/system/GSystemError.h"

#include <windows.h>

boost::system::error_code GetLastSystemError() noexcept
{
    return {static_cast<int>(GetLastError()), boost::system::system_category()};
}
