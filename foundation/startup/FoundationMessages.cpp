#include "foundation/startup/FoundationMessages.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GStringPoolSupport.h"

#include <iterator>

static const GStringPoolDataStruct cMessages[] = {
    {GErrorCode::cCreateSemaphore, "Could not create the semaphore (common resources lock)"},
    {GErrorCode::cLockSemaphore, "Could not lock the semaphore"},
    {GErrorCode::cUnlockSemaphore, "Could not unlock the semaphore"},
    {GErrorCode::cUnlinkSemaphore, "Named semaphore already exist but could not unlink"},
};

void RegisterFoundationMessages()
{
    GStringPoolSupport::AddStringPoolData(GStringPool::cEnglish, QStringLiteral("WinAnsiEncoding"), cMessages,
                                          std::size(cMessages));
}
