#include "foundation/system/GSystemError.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

void RaiseFileError(const GString& what, const GPathName& path, const boost::system::error_code& reason)
{
    throw GCustomException(GErrorCode::cFile,
                           what.arg(path.GetNativePath()) + QStringLiteral(": ") + GetReasonText(reason));
}

GString GetReasonText(const boost::system::error_code& reason)
{
    return QString::fromLocal8Bit(reason.message().c_str()).trimmed();
}
