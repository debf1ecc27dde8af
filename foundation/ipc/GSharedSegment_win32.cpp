#include "foundation/ipc/GSharedSegment.h"

#include "foundation/system/GSystemError.h"
#include "foundation/system/POwnerSecurity.h"

#include <aclapi.h>

#include <string>
#include <vector>

namespace
{
constexpr DWORD cPrepareTime = 3000;  // milliseconds

[[noreturn]] void RaiseLastError(const GString& name)
{
    const GString reason = GetReasonText(GetLastSystemError());
    RaiseSegmentError(QStringLiteral("The shared segment \"%1\" can't be opened: ") + reason, name);
}

class KernelHandle
{
public:
    explicit KernelHandle(HANDLE handle) : mHandle(handle) {}
    ~KernelHandle()
    {
        if (mHandle != nullptr)
            ::CloseHandle(mHandle);
    }
    KernelHandle(const KernelHandle&) = delete;
    KernelHandle& operator=(const KernelHandle&) = delete;

    HANDLE Get() const { return mHandle; }

private:
    HANDLE mHandle;
};

HANDLE OpenMapping(const std::wstring& name, size_t size, GSharedSegment::Mode mode)
{
    if (mode == GSharedSegment::Mode::Open)
        return ::OpenFileMappingW(FILE_MAP_READ | FILE_MAP_WRITE | READ_CONTROL, FALSE, name.c_str());
    POwnerSecurity security;
    return ::CreateFileMappingW(INVALID_HANDLE_VALUE, security.Get(), PAGE_READWRITE, 0,
                                static_cast<DWORD>(size), name.c_str());
}

std::vector<BYTE> GetTokenValue(TOKEN_INFORMATION_CLASS value)
{
    HANDLE handle = nullptr;
    if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &handle))
        return {};
    const KernelHandle token(handle);
    DWORD size = 0;
    ::GetTokenInformation(handle, value, nullptr, 0, &size);
    std::vector<BYTE> bytes(size);
    if (!::GetTokenInformation(handle, value, bytes.data(), size, &size))
        return {};
    return bytes;
}

// The user himself, or who is entered as owner of what he makes: for administrators that is their group.
bool IsOwnIdentity(PSID identity)
{
    std::vector<BYTE> user = GetTokenValue(TokenUser);
    std::vector<BYTE> owner = GetTokenValue(TokenOwner);
    return (!user.empty() && ::EqualSid(identity, reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid)) ||
           (!owner.empty() && ::EqualSid(identity, reinterpret_cast<TOKEN_OWNER*>(owner.data())->Owner));
}

void CheckOwner(HANDLE mapping, const GString& name)
{
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = ::GetSecurityInfo(mapping, SE_KERNEL_OBJECT, OWNER_SECURITY_INFORMATION, &owner,
                                          nullptr, nullptr, nullptr, &descriptor);
    const bool isOwn = error == ERROR_SUCCESS && owner != nullptr && IsOwnIdentity(owner);
    ::LocalFree(descriptor);
    if (!isOwn)
        RaiseSegmentError(QStringLiteral("The shared segment \"%1\" belongs to another user."), name);
}

// Holds the mutex under which segments of the name get their first content.
class PrepareLock
{
public:
    explicit PrepareLock(const GString& name)
        : mMutex(::CreateMutexW(POwnerSecurity().Get(), FALSE,
                                (name + QLatin1String("_I")).toStdWString().c_str()))
    {
        const DWORD result =
            mMutex.Get() != nullptr ? ::WaitForSingleObject(mMutex.Get(), cPrepareTime) : WAIT_FAILED;
        if (result != WAIT_OBJECT_0 && result != WAIT_ABANDONED)
            RaiseLastError(name);
    }
    ~PrepareLock() { ::ReleaseMutex(mMutex.Get()); }
    PrepareLock(const PrepareLock&) = delete;
    PrepareLock& operator=(const PrepareLock&) = delete;

private:
    KernelHandle mMutex;
};
}  // namespace

struct GSharedSegment::Handle
{
    explicit Handle(HANDLE handle) : mapping(handle) {}
    ~Handle()
    {
        if (view != nullptr)
            ::UnmapViewOfFile(view);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    KernelHandle mapping;
    void* view = nullptr;
};

GSharedSegment::GSharedSegment(const GString& name, size_t size, Mode mode, const Prepare& prepare)
    : mHandle(std::make_unique<Handle>(OpenMapping(name.toStdWString(), size, mode)))
{
    if (mHandle->mapping.Get() == nullptr)
        RaiseLastError(name);
    CheckOwner(mHandle->mapping.Get(), name);
    mHandle->view = ::MapViewOfFile(mHandle->mapping.Get(), FILE_MAP_READ | FILE_MAP_WRITE, 0, 0, 0);
    MEMORY_BASIC_INFORMATION region = {};
    if (mHandle->view == nullptr || ::VirtualQuery(mHandle->view, &region, sizeof region) == 0)
        RaiseLastError(name);
    mData = static_cast<uint8_t*>(mHandle->view);
    mSize = region.RegionSize;
    if (mSize < size)
        RaiseSegmentDamage(QStringLiteral("The shared segment \"%1\" is too small."), name);
    if (prepare) {
        const PrepareLock lock(name);
        prepare(mData, 0);
    }
}

GSharedSegment::~GSharedSegment() = default;

bool GSharedSegment::IsIntact() const
{
    return true;
}

bool GSharedSegment::IsLost() const
{
    return false;
}

bool GSharedSegment::IsCurrent() const
{
    return true;
}

bool GSharedSegment::IsThere(const GString& name)
{
    const KernelHandle mapping(::OpenFileMappingW(FILE_MAP_READ, FALSE, name.toStdWString().c_str()));
    return mapping.Get() != nullptr || ::GetLastError() != ERROR_FILE_NOT_FOUND;
}

bool GSharedSegment::OutlivesItsUsers()
{
    return false;
}

std::vector<GString> GSharedSegment::ListRests(const GString&)
{
    return {};
}

bool GSharedSegment::Remove(const GString&)
{
    return true;
}
