#include "foundation/ipc/GSharedSegment.h"

#include "foundation/ipc/PGuardedMapping.h"
#include "foundation/ipc/PSegmentFile.h"
#include "foundation/system/GSystemError.h"

#include <QDir>

#include <sys/stat.h>
#include <unistd.h>
#include <cerrno>

namespace
{
constexpr size_t cMostBytes = size_t(64) << 20;  // no layout needs more; all of it is claimed
constexpr int cAttempts = 100;                   // while others keep taking the name away

// Claims the space of a segment, and gives its size. One that can't be had whole leaves no name.
size_t MakeWhole(const PSegmentFile& file, size_t needed, GSharedSegment::Mode mode)
{
    const size_t size = static_cast<size_t>(file.GetStatus().st_size);
    const bool isNew = size == 0 && mode != GSharedSegment::Mode::Open;
    if (!isNew && size < needed)
        RaiseSegmentDamage(QStringLiteral("The shared segment \"%1\" is too small."), file.GetName());
    if (size > cMostBytes)
        RaiseSegmentDamage(QStringLiteral("The shared segment \"%1\" is too large."), file.GetName());
    const size_t whole = isNew ? needed : size;
    if (file.ClaimSpace(static_cast<off_t>(whole), isNew))
        return whole;
    const GString reason = GetReasonText(GetLastSystemError());
    if (isNew)
        static_cast<void>(GSharedSegment::Remove(file.GetName()));  // the error below says enough
    RaiseSegmentError(QStringLiteral("There is no space for the shared segment \"%1\": ") + reason,
                      file.GetName());
}
}  // namespace

struct GSharedSegment::Handle
{
    Handle(const GString& name, Mode mode) : file(name, mode) {}

    // Gives the size.
    size_t Map(size_t needed, Mode mode)
    {
        const size_t size = MakeWhole(file, needed, mode);
        memory = std::make_unique<PGuardedMapping>(file.Get(), size);
        if (!memory->IsMapped())
            file.RaiseLastError();
        return size;
    }

    PSegmentFile file;
    std::unique_ptr<PGuardedMapping> memory;
};

GSharedSegment::GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare)
{
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        mHandle = std::make_unique<Handle>(name, mode);
        const PSegmentLock lock(mHandle->file);
        // Whoever waited for the lock may have waited for one who put the segment away.
        if (!mHandle->file.IsNamed())
            continue;
        mSize = mHandle->Map(size, mode);
        mData = mHandle->memory->GetData();
        if (prepare)
            prepare(mData, mHandle->file.GetStatus().st_ino);
        return;
    }
    RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is put away again and again."), name);
}

GSharedSegment::~GSharedSegment() = default;

bool GSharedSegment::IsIntact() const
{
    return !IsLost() && mHandle->file.GetSize() >= static_cast<off_t>(mSize);
}

bool GSharedSegment::IsLost() const
{
    return mHandle->memory->IsLost();
}

bool GSharedSegment::IsCurrent() const
{
    return !IsLost() && mHandle->file.GetNamedSize() >= static_cast<off_t>(mSize);
}

bool GSharedSegment::IsThere(const GString& name)
{
    struct stat status = {};
    return ::lstat(PSegmentFile::GetPath(name).constData(), &status) == 0 ||
           (errno != ENOENT && errno != ENOTDIR);
}

bool GSharedSegment::OutlivesItsUsers()
{
    return true;
}

std::vector<GString> GSharedSegment::ListRests(const GString& begin)
{
    const int leaf = begin.lastIndexOf(QLatin1Char('/')) + 1;
    std::vector<GString> rests;
    for (const QString& name : QDir(begin.left(leaf)).entryList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (name.startsWith(begin.midRef(leaf)))
            rests.push_back(name.mid(begin.size() - leaf));
    }
    return rests;
}

bool GSharedSegment::Remove(const GString& name)
{
    return ::unlink(PSegmentFile::GetPath(name).constData()) == 0 || errno == ENOENT || errno == ENOTDIR;
}
