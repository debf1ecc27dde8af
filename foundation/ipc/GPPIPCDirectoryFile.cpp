#include "foundation/ipc/GPPIPCDirectoryFile.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

namespace
{
constexpr int cAttempts = 100;  // while others keep taking the names away
constexpr std::chrono::milliseconds cLockTime(3000);

const GString cSource = QStringLiteral("GPPIPCDirectoryFile::Enter");

GString GetLockName(const GString& name)
{
    return name + QLatin1String("_L");
}

// Opens an object with `open`; one that is damaged is put away first.
template <typename Open, typename Remove>
auto OpenOrReplace(const Open& open, const Remove& remove)
{
    try {
        return open();
    } catch (const GDamagedObject& error) {
        GTrace::Error(cSource, error.GetDescription());
        remove();
        return open();
    }
}

std::unique_ptr<GInterProcessMutex> OpenLock(const GString& name, GInterProcessMutex::Mode mode)
{
    return std::make_unique<GInterProcessMutex>(GetLockName(name), mode);
}

std::unique_ptr<GSharedSegment> OpenSegment(const GString& name, GSharedSegment::Mode mode)
{
    return std::make_unique<GSharedSegment>(name, GPPIPCDirectory::cSize, mode);
}

bool IsDamaged(const GPPIPCDirectory& directory)
{
    try {
        directory.GetPairs();
        return false;
    } catch (const GDamagedObject& error) {
        GTrace::Error(cSource, error.GetDescription());
        return true;
    }
}
}  // namespace

struct GPPIPCDirectoryFile::Open
{
    std::unique_ptr<GInterProcessMutex> mutex;
    std::unique_ptr<GSharedSegment> segment;

    bool IsCurrent() const { return segment->IsCurrent() && mutex->IsCurrent(); }
};

GPPIPCDirectoryFile::Access::Access(const std::shared_ptr<Open>& open, std::chrono::milliseconds timeout)
    : mOpen(open), mLock(*open->mutex, timeout), mDirectory(open->segment->GetData())
{
}

// The lock comes first: who makes the directory holds it.
std::shared_ptr<GPPIPCDirectoryFile::Open> GPPIPCDirectoryFile::GetOpen(Mode mode)
{
    const std::lock_guard<std::mutex> guard(mMutex);
    if (mOpen && mOpen->IsCurrent())
        return mOpen;
    mOpen.reset();
    auto open = std::make_shared<Open>();
    if (mode == Mode::IfThere) {
        if (!GSharedSegment::IsThere(mName))
            return nullptr;
        open->mutex = OpenLock(mName, GInterProcessMutex::Mode::Open);
        open->segment = OpenSegment(mName, GSharedSegment::Mode::Open);
    } else {
        open->mutex = OpenOrReplace([&] { return OpenLock(mName, GInterProcessMutex::Mode::OpenOrCreate); },
                                    [&] { GInterProcessMutex::Remove(GetLockName(mName)); });
        const GInterProcessLock lock(*open->mutex, cLockTime);
        open->segment = OpenOrReplace([&] { return OpenSegment(mName, GSharedSegment::Mode::OpenOrCreate); },
                                      // Another process's stays; the second opening says why it can't be.
                                      [&] { static_cast<void>(GSharedSegment::Remove(mName)); });
    }
    mOpen = open;
    return open;
}

// None, too, when the names were taken away meanwhile.
std::unique_ptr<GPPIPCDirectoryFile::Access> GPPIPCDirectoryFile::EnterOnce(Mode mode)
{
    const std::shared_ptr<Open> open = GetOpen(mode);
    if (!open)
        return nullptr;
    auto access = std::make_unique<Access>(open, cLockTime);
    if (!open->IsCurrent())
        return nullptr;
    GPPIPCDirectory::Prepare(open->segment->GetData());
    if (mode == Mode::Make && IsDamaged(access->Get()))
        GPPIPCDirectory::MakeEmpty(open->segment->GetData());
    return access;
}

std::unique_ptr<GPPIPCDirectoryFile::Access> GPPIPCDirectoryFile::Enter(Mode mode)
{
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        try {
            if (std::unique_ptr<Access> access = EnterOnce(mode))
                return access;
        } catch (const GException&) {
            // Who takes the names away does not do it in one step.
            if (mode == Mode::Make || GSharedSegment::IsThere(mName))
                throw;
        }
        if (mode == Mode::IfThere && !GSharedSegment::IsThere(mName))
            return nullptr;
    }
    RaiseSegmentError(QStringLiteral("The message channel \"%1\" is put away again and again."), mName);
}

std::unique_ptr<GPPIPCDirectoryFile::Access> GPPIPCDirectoryFile::TryToEnter()
{
    return Enter(Mode::IfThere);
}

std::unique_ptr<GPPIPCDirectoryFile::Access> GPPIPCDirectoryFile::Enter()
{
    return Enter(Mode::Make);
}

void GPPIPCDirectoryFile::Leave(std::unique_ptr<Access> access)
{
    if (!access->Get().GetPairs().empty())
        return;
    static_cast<void>(GSharedSegment::Remove(mName));  // one that stays is empty
    GInterProcessMutex::Remove(GetLockName(mName));
}
