#pragma once

#include "foundation/core/GPathName.h"

#include <boost/system/error_code.hpp>

// The reason of the last system call of this thread that failed (errno, GetLastError). Read it before
// anything else is called.
boost::system::error_code GetLastSystemError() noexcept;

// Raises a GCustomException with GErrorCode::cFile that names what was tried, the path and the system's
// reason: "The file \"/a/b\" can't be written: No space left on device". `what` holds %1 for the native path.
[[noreturn]] void RaiseFileError(const GString& what, const GPathName& path,
                                 const boost::system::error_code& reason);

// The system's own words for the reason.
GString GetReasonText(const boost::system::error_code& reason);
