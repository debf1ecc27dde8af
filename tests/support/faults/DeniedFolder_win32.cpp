#include "tests/support/faults/DeniedFolder.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <windows.h>

#include <aclapi.h>

static void SetRights(HANDLE folder, PACL rights)
{
    EXPECT_EQ(
        SetSecurityInfo(folder, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, rights, nullptr),
        ERROR_SUCCESS);
}

DeniedFolder::DeniedFolder(const QString& folder, Rights rights)
    : mHandle(CreateFileW(reinterpret_cast<const wchar_t*>(folder.utf16()), READ_CONTROL | WRITE_DAC,
                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                          FILE_FLAG_BACKUP_SEMANTICS, nullptr))
{
    EXPECT_NE(mHandle, INVALID_HANDLE_VALUE) << qPrintable(folder);
    PACL before = nullptr;
    GetSecurityInfo(mHandle, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &before, nullptr,
                    &mDescriptor);
    mRights = before;
    wchar_t user[] = L"CURRENT_USER";
    EXPLICIT_ACCESSW denial = {};
    BuildExplicitAccessWithNameW(&denial, user, rights == cAll ? GENERIC_ALL : GENERIC_WRITE, DENY_ACCESS,
                                 NO_INHERITANCE);
    PACL denied = nullptr;
    EXPECT_EQ(SetEntriesInAclW(1, &denial, before, &denied), ERROR_SUCCESS);
    SetRights(mHandle, denied);
    LocalFree(denied);
}

DeniedFolder::~DeniedFolder()
{
    SetRights(mHandle, static_cast<PACL>(mRights));
    CloseHandle(mHandle);
    LocalFree(mDescriptor);
}

bool DeniedFolder::CanBe()
{
    const QTemporaryDir folder;
    const DeniedFolder denied(folder.path(), cWriting);
    return !QFile(folder.filePath(QStringLiteral("a"))).open(QIODevice::WriteOnly);
}
