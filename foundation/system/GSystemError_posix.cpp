#include "foundation/system/GSystemError.h"

#include <cerrno>

boost::system::error_code GetLastSystemError() noexcept
{
    return {errno, boost::system::system_category()};
}
