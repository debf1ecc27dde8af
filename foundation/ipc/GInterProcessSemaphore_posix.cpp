#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/ipc/GInterProcessSemaphore.h"
#include "foundation/ipc/GSharedSegment.h"
#include "foundation/ipc/PTimeout.h"
#include "foundation/system/GSystemError.h"

#include <semaphore.h>
#include <cerrno>

namespace
{
// What the semaphore's segment holds.
struct Content
{
    uint32_t magic;
    uint32_t version;
    sem_t semaphore;
};

constexpr size_t cSegmentSize = 64;
constexpr uint32_t cMagic = 0x5353564D;
constexpr uint32_t cVersion = 1;
static_assert(sizeof(Content) <= cSegmentSize, "the semaphore must fit into its segment");

[[noreturn]] void RaiseLastError(int32_t code, const GString& what)
{
    throw GCustomException(code, what.arg(GetReasonText(GetLastSystemError())));
}

void PrepareContent(uint8_t* data, int initialCount)
{
    Content* const content = reinterpret_cast<Content*>(data);
    if (content->magic == 0) {
        if (::sem_init(&content->semaphore, 1, static_cast<unsigned>(initialCount)) != 0)
            RaiseLastError(GErrorCode::cCreateSemaphore, QStringLiteral("The semaphore can't be made: %1"));
        content->version = cVersion;
        content->magic = cMagic;
    }
    if (content->magic != cMagic || content->version != cVersion)
        throw GSimpleException(GErrorCode::cCreateSemaphore,
                               QStringLiteral("The semaphore's segment is damaged."));
}
}  // namespace

struct GInterProcessSemaphore::Handle
{
    Handle(const GString& name, int initialCount)
        : segment(name, cSegmentSize, GSharedSegment::Mode::OpenOrCreate,
                  [initialCount](uint8_t* data) { PrepareContent(data, initialCount); })
    {
    }
    sem_t* Get() { return &reinterpret_cast<Content*>(segment.GetData())->semaphore; }

    GSharedSegment segment;
};

GInterProcessSemaphore::GInterProcessSemaphore(const GString& name, int initialCount)
{
    try {
        mHandle = std::make_unique<Handle>(name, initialCount);
    } catch (const GException& error) {
        throw GCustomException(GErrorCode::cCreateSemaphore, error.GetDescription());
    }
}

GInterProcessSemaphore::~GInterProcessSemaphore() = default;

bool GInterProcessSemaphore::Acquire(std::chrono::milliseconds timeout)
{
    const struct timespec deadline = GetDeadline(timeout);
    int status = 0;
    do {
        status = ::sem_timedwait(mHandle->Get(), &deadline);
    } while (status != 0 && errno == EINTR);
    if (status != 0 && errno != ETIMEDOUT)
        RaiseLastError(GErrorCode::cLockSemaphore, QStringLiteral("The semaphore can't be had: %1"));
    return status == 0;
}

void GInterProcessSemaphore::Release()
{
    if (::sem_post(mHandle->Get()) != 0)
        RaiseLastError(GErrorCode::cUnlockSemaphore, QStringLiteral("The semaphore can't be let go: %1"));
}

void GInterProcessSemaphore::Remove(const GString& name)
{
    if (!GSharedSegment::Remove(name))
        RaiseLastError(GErrorCode::cUnlinkSemaphore, QStringLiteral("The semaphore can't be removed: %1"));
}
