#include "foundation/ipc/GSharedSegment.h"

#include "foundation/ipc/PSegmentFile.h"
#include "foundation/system/GSystemError.h"

#include <QDir>

#include <sys/mman.h>
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
        GSharedSegment::Remove(file.GetName());
    RaiseSegmentError(QStringLiteral("There is no space for the shared segment \"%1\": ") + reason,
                      file.GetName());
}
}  // namespace

struct GSharedSegment::Handle
{
    Handle(const GString& name, Mode mode) : file(name, mode) {}
    ~Handle()
    {
        if (data != MAP_FAILED)
            ::munmap(data, size);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    void Map(size_t needed, Mode mode)
    {
        size = MakeWhole(file, needed, mode);
        data = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.Get(), 0);
        if (data == MAP_FAILED)
            file.RaiseLastError();
    }

    PSegmentFile file;
    void* data = MAP_FAILED;
    size_t size = 0;
};

GSharedSegment::GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare)
{
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        mHandle = std::make_unique<Handle>(name, mode);
        const PSegmentLock lock(mHandle->file);
        // Whoever waited for the lock may have waited for one who put the segment away.
        if (!mHandle->file.IsNamed())
            continue;
        mHandle->Map(size, mode);
        mSize = mHandle->size;
        mData = static_cast<uint8_t*>(mHandle->data);
        if (prepare)
            prepare(mData, mHandle->file.GetStatus().st_ino);
        return;
    }
    RaiseSegmentError(QStringLiteral("The shared segment \"%1\" is put away again and again."), name);
}

GSharedSegment::~GSharedSegment() = default;

bool GSharedSegment::IsIntact() const
{
    return mHandle->file.GetSize() >= static_cast<off_t>(mSize);
}

bool GSharedSegment::IsCurrent() const
{
    return IsIntact() && mHandle->file.IsNamed();
}

bool GSharedSegment::IsThere(const GString& name)
{
    struct stat status = {};
    return ::lstat(PSegmentFile::GetPath(name).constData(), &status) == 0 ||
           (errno != ENOENT && errno != ENOTDIR);
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
