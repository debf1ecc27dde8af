#include "foundation/system/GOwnedFile.h"

#include "foundation/system/GFileCalls.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GOwnerLock.h"
#include "foundation/system/GSystemError.h"

static constexpr int cMostNames = 1000;  // that are tried before a folder counts as unusable

GOwnedFile::GOwnedFile(const NextName& nextName)
{
    boost::system::error_code reason = boost::system::errc::make_error_code(boost::system::errc::file_exists);
    for (int attempt = 0; attempt < cMostNames; ++attempt) {
        const GPathName path = nextName();
        PFileHandle file = GOwnerLock::OpenNew(path);
        if (!file.IsOpen()) {
            reason = GetLastSystemError();
            if (!GFileCalls::IsNameTaken(reason.value()))
                RaiseFileError(QStringLiteral("The file \"%1\" can't be created"), path, reason);
            continue;
        }
        // Somebody who clears up may have come between the making and the lock; the file is gone then.
        const GOwnerLock::State state = GOwnerLock::TryLock(file);
        const GOwnerLock::Naming naming = GOwnerLock::LookAtName(file, path);
        if (naming == GOwnerLock::Naming::cUnknown) {
            reason = GetLastSystemError();
            GFileSystemBase::DropFile(path);
            RaiseFileError(QStringLiteral("The file \"%1\" can't be created"), path, reason);
        }
        if (state == GOwnerLock::State::cHeld || naming != GOwnerLock::Naming::cSame)
            continue;
        mPath = path;
        mHandle = std::move(file);
        return;
    }
    RaiseFileError(QStringLiteral("The file \"%1\" can't be created"), nextName(), reason);
}

GOwnedFile::~GOwnedFile()
{
    if (mHandle.IsOpen())
        GFileSystemBase::DropFile(mPath);
    Disown();
}

void GOwnedFile::Disown() noexcept
{
    GOwnerLock::Unlock(mHandle);
    mHandle.Drop();
}

bool GOwnedFile::IsOwned(const GPathName& path) noexcept
{
    const PFileHandle file = GOwnerLock::OpenOld(path);
    if (!file.IsOpen())
        return GetLastSystemError() != boost::system::errc::no_such_file_or_directory;
    const bool isFree = GOwnerLock::TryLock(file) == GOwnerLock::State::cLocked;
    GOwnerLock::Unlock(file);
    return !isFree;
}

void GOwnedFile::RemoveUnowned(const GPathName& path, const std::function<bool()>& removeRest) noexcept
{
    const PFileHandle file = GOwnerLock::OpenOld(path);
    if (!file.IsOpen())
        return;
    // The lock is held while the file goes: whoever has just made it sees that and makes another.
    const bool isFree = GOwnerLock::TryLock(file) == GOwnerLock::State::cLocked &&
                        GOwnerLock::LookAtName(file, path) == GOwnerLock::Naming::cSame;
    if (isFree && (!removeRest || removeRest()))
        GFileSystemBase::DropFile(path);
    GOwnerLock::Unlock(file);
}

void GOwnedFile::Own(const PFileHandle& file) noexcept
{
    if (file.IsOpen())
        GOwnerLock::TryLock(file);
}
