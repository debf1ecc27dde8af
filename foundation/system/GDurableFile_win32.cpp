#include "foundation/system/GDurableFile.h"

#include "foundation/core/PHeldFile.h"
#include "foundation/core/PReplacedFile.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/POwnerSecurity.h"

#include <windows.h>

#include <string>
#include <vector>

namespace
{
std::wstring GetText(const GPathName& path)
{
    return path.GetSystemPath().toStdWString();
}

// A file that is marked so goes when its last handle is closed, that is also when this process is killed.
void SetDeletedOnClose(HANDLE file, bool isDeleted)
{
    FILE_DISPOSITION_INFO information = {};
    information.DeleteFile = isDeleted;
    SetFileInformationByHandle(file, FileDispositionInfo, &information, sizeof information);
}

// Gives the new file the access rights and the marks of the old one, as far as the system allows.
void TakeOverRights(const std::wstring& oldFile, const std::wstring& newFile)
{
    DWORD size = 0;
    GetFileSecurityW(oldFile.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<BYTE> security(size);
    if (size > 0 &&
        GetFileSecurityW(oldFile.c_str(), DACL_SECURITY_INFORMATION, security.data(), size, &size))
        SetFileSecurityW(newFile.c_str(), DACL_SECURITY_INFORMATION, security.data());
    const DWORD attributes = GetFileAttributesW(oldFile.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES)
        SetFileAttributesW(newFile.c_str(), attributes);
}

// One step, also for whoever is killed in it, but only while nobody has the target open.
bool RenameOver(const std::wstring& temporary, const std::wstring& target)
{
    constexpr DWORD cFlags = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
    return MoveFileExW(temporary.c_str(), target.c_str(), cFlags) != 0;
}

// Bears with readers that share deletion, but takes two steps inside the system: the old file goes to a name
// that we give it, so that it can be brought back when the second step fails, and by others when this process
// is killed in between.
bool ReplaceInTwoSteps(const std::wstring& temporary, const std::wstring& target)
{
    const std::wstring backup = temporary + L".old";
    const bool isReplaced = ReplaceFileW(target.c_str(), temporary.c_str(), backup.c_str(),
                                         REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr) != 0;
    const DWORD error = GetLastError();
    if (isReplaced || GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES)
        DeleteFileW(backup.c_str());
    else
        MoveFileExW(backup.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
    SetLastError(error);
    return isReplaced;
}
}  // namespace

GPathName GDurableFile::FollowLinks(const GPathName& target)
{
    if (PReplacedFile::BringBack(target.GetSystemPath()) == PReplacedFile::Found::cHeld)
        RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), target, GetLastSystemError());
    const std::wstring text = GetText(target);
    const DWORD attributes = GetFileAttributesW(text.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0)
        return target;
    constexpr DWORD cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    const HANDLE file =
        CreateFileW(text.c_str(), 0, cShareAll, nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), target, GetLastSystemError());
    const PFileHandle handle(reinterpret_cast<intptr_t>(file));
    std::vector<wchar_t> path(GetFinalPathNameByHandleW(file, nullptr, 0, 0) + 1);
    const DWORD length = GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0);
    if (length == 0 || length >= path.size())
        RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), target, GetLastSystemError());
    return GPathName(QString::fromWCharArray(path.data(), static_cast<int>(length)));
}

void GDurableFile::OpenTemporary()
{
    const DWORD attributes = GetFileAttributesW(GetText(mTarget).c_str());
    constexpr DWORD cUntouchable = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY;
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND)
        RaiseWriteError();
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & cUntouchable) != 0) {
        SetLastError(ERROR_ACCESS_DENIED);
        RaiseWriteError();
    }
    mTemporary = MakeTemporaryName();
    POwnerSecurity security;
    SECURITY_ATTRIBUTES* const forOwner = mAccess == Access::cOwnerOnly ? security.Get() : nullptr;
    const HANDLE file = CreateFileW(GetText(mTemporary).c_str(), GENERIC_WRITE | DELETE, FILE_SHARE_DELETE,
                                    forOwner, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        mTemporary = GPathName();
        RaiseWriteError();
    }
    mHandle = PFileHandle(reinterpret_cast<intptr_t>(file));
    SetDeletedOnClose(file, true);
}

void GDurableFile::WriteNow(const char* bytes, int count)
{
    while (count > 0) {
        DWORD written = 0;
        if (!WriteFile(reinterpret_cast<HANDLE>(mHandle.Get()), bytes, static_cast<DWORD>(count), &written,
                       nullptr))
            RaiseWriteError();
        bytes += written;
        count -= static_cast<int>(written);
    }
}

void GDurableFile::WriteAt(int64_t offset, const char* bytes, int count)
{
    while (count > 0) {
        OVERLAPPED place = {};
        place.Offset = static_cast<DWORD>(offset);
        place.OffsetHigh = static_cast<DWORD>(offset >> 32);
        DWORD written = 0;
        if (!WriteFile(reinterpret_cast<HANDLE>(mHandle.Get()), bytes, static_cast<DWORD>(count), &written,
                       &place))
            RaiseWriteError();
        bytes += written;
        offset += written;
        count -= static_cast<int>(written);
    }
}

void GDurableFile::FlushToDisk()
{
    if (!FlushFileBuffers(reinterpret_cast<HANDLE>(mHandle.Get())))
        RaiseWriteError();
}

// It has one from the start.
void GDurableFile::GiveName() {}

void GDurableFile::PutInPlace()
{
    SetDeletedOnClose(reinterpret_cast<HANDLE>(mHandle.Get()), false);
    if (!mHandle.Close())
        RaiseWriteError();
    const std::wstring temporary = GetText(mTemporary);
    const std::wstring target = GetText(mTarget);
    TakeOverRights(target, temporary);
    const bool isReplaced = PHeldFile::Try([&] { return RenameOver(temporary, target); }) ||
                            (PHeldFile::MayPass() && ReplaceInTwoSteps(temporary, target));
    if (!isReplaced)
        RaiseWriteError();
    mTemporary = GPathName();
}

// The file is closed before it is renamed, so it can't be owned by a lock; but here no process is hidden from
// another, on one machine. The identifier alone would not do: this very process may bear that of the one that
// was killed.
void GDurableFile::RemoveLeftover(const GPathName& path, const PTemporaryName::Maker& maker)
{
    if (maker.machine == GetOwnMaker().machine &&
        GProcessInfo::GetStartTime(maker.process) != maker.startTime)
        GFileSystemBase::DropFile(path);
}

void GDurableFile::RemoveTemporary() noexcept
{
    mHandle.Drop();
    if (!mTemporary.IsEmpty())
        DeleteFileW(GetText(mTemporary).c_str());
    mTemporary = GPathName();
}
