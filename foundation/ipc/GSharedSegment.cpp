#include "foundation/ipc/GSharedSegment.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

void RaiseSegmentError(const GString& what, const GString& name)
{
    throw GCustomException(GErrorCode::cSegmentHeader, what.arg(name));
}
