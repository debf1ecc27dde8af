#include "foundation/ipc/GSharedSegment.h"

#include "foundation/core/GErrorCodes.h"

void RaiseSegmentError(const GString& what, const GString& name)
{
    throw GCustomException(GErrorCode::cSegmentHeader, what.arg(name));
}

void RaiseSegmentDamage(const GString& what, const GString& name)
{
    throw GDamagedObject(GErrorCode::cSegmentHeader, what.arg(name));
}
