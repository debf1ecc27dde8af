#include "apps/hopboxctl/FolderRights.h"

#include "apps/hopboxctl/ShellWord.h"

#include <QDir>

#include <aclapi.h>
#include <windows.h>

#include <memory>
#include <string>

namespace
{
// Of each that lets somebody make, change or remove what is in a folder, or give himself that right.
constexpr DWORD cWriting = FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY | FILE_DELETE_CHILD | WRITE_DAC |
                           WRITE_OWNER | GENERIC_WRITE | GENERIC_ALL;

struct Freed
{
    void operator()(void* memory) const { LocalFree(memory); }
};

// The list of a folder's rights.
class RightsList
{
public:
    explicit RightsList(const QString& folder) : mName(QDir::toNativeSeparators(folder).toStdWString())
    {
        PSECURITY_DESCRIPTOR descriptor = nullptr;
        mIsRead = GetNamedSecurityInfoW(mName.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, &mList, nullptr, &descriptor) == ERROR_SUCCESS;
        mDescriptor.reset(descriptor);
    }

    // Whether it lets one of these write. A folder without a list lets everybody.
    template <size_t count>
    bool LetsWrite(const WELL_KNOWN_SID_TYPE (&groups)[count])
    {
        if (mIsRead && mList == nullptr)
            return true;
        for (DWORD at = 0; mIsRead && at < mList->AceCount; ++at) {
            if (LetsWrite(at, groups, groups + count))
                return true;
        }
        return false;
    }

    // Takes what lets one of these write off the list, which inherits nothing any more.
    template <size_t count>
    bool CloseTo(const WELL_KNOWN_SID_TYPE (&groups)[count])
    {
        if (!mIsRead || mList == nullptr)
            return false;
        for (DWORD at = mList->AceCount; at-- > 0;) {
            if (LetsWrite(at, groups, groups + count) && !DeleteAce(mList, at))
                return false;
        }
        return SetNamedSecurityInfoW(mName.data(), SE_FILE_OBJECT,
                                     DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                                     nullptr, mList, nullptr) == ERROR_SUCCESS;
    }

private:
    bool LetsWrite(DWORD at, const WELL_KNOWN_SID_TYPE* group, const WELL_KNOWN_SID_TYPE* end) const
    {
        void* entry = nullptr;
        if (!GetAce(mList, at, &entry))
            return false;
        const auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        if (allowed->Header.AceType != ACCESS_ALLOWED_ACE_TYPE || (allowed->Mask & cWriting) == 0)
            return false;
        for (; group != end; ++group) {
            if (IsWellKnownSid(const_cast<DWORD*>(&allowed->SidStart), *group))
                return true;
        }
        return false;
    }

    std::wstring mName;
    std::unique_ptr<void, Freed> mDescriptor;
    PACL mList = nullptr;
    bool mIsRead = false;
};

constexpr WELL_KNOWN_SID_TYPE cEverybody[] = {WinWorldSid};
constexpr WELL_KNOWN_SID_TYPE cOthers[] = {WinWorldSid, WinAuthenticatedUserSid, WinInteractiveSid,
                                           WinBuiltinUsersSid, WinBuiltinGuestsSid};

QString GetCommand(const QString& folder, const char* groups)
{
    return QStringLiteral("icacls %1 /inheritance:d /remove:g %2")
        .arg(ShellWord::Quote(QDir::toNativeSeparators(folder)), QLatin1String(groups));
}
}  // namespace

bool FolderRights::MayOthersWrite(const QString& folder)
{
    return RightsList(folder).LetsWrite(cOthers);
}

bool FolderRights::MayAnybodyWrite(const QString& folder)
{
    return RightsList(folder).LetsWrite(cEverybody);
}

bool FolderRights::CloseToOthers(const QString& folder)
{
    return RightsList(folder).CloseTo(cOthers);
}

QString FolderRights::GetClosingCommand(const QString& folder)
{
    return GetCommand(folder, "*S-1-1-0 *S-1-5-11 *S-1-5-4 *S-1-5-32-545 *S-1-5-32-546");
}

QString FolderRights::GetCommandAgainstAnybody(const QString& folder)
{
    return GetCommand(folder, "*S-1-1-0");
}
