#include "hopbox/HopboxHandOff.h"
#include "tests/support/FolderRights.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <aclapi.h>
#include <sddl.h>
#include <windows.h>

// Whether everybody may read it.
static bool IsOpenToAll(const QString& path)
{
    std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetNamedSecurityInfoW(name.data(), SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr, nullptr, &list,
                              nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    PSID everyone = nullptr;
    ConvertStringSidToSidW(L"S-1-1-0", &everyone);
    bool isOpen = false;
    for (DWORD at = 0; list != nullptr && at < list->AceCount; ++at) {
        void* entry = nullptr;
        GetAce(list, at, &entry);
        const auto* const allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        isOpen = isOpen || (allowed->Header.AceType == ACCESS_ALLOWED_ACE_TYPE &&
                            EqualSid(const_cast<DWORD*>(&allowed->SidStart), everyone) &&
                            (allowed->Mask & FILE_READ_DATA) != 0);
    }
    LocalFree(everyone);
    LocalFree(descriptor);
    return isOpen;
}

TEST(RightsTest, WhatArrivesIsForWhomTheInboxIs)
{
    for (const bool isOpen : {true, false}) {
        const Sandbox sandbox;
        const QString inbox = sandbox.GetPath("in"_q);
        WriteFile(sandbox.GetPath("a.pdf"_q), "1");
        PrinterProcessor receiver(sandbox, {"--inbox"_q, inbox});
        ASSERT_TRUE(SetFolderRights(inbox, isOpen ? L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)(A;OICI;FR;;;WD)"
                                                  : L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)"));
        EXPECT_TRUE(
            HopboxHandOff::SubmitJob("Press"_q, QDir::toNativeSeparators(sandbox.GetPath("a.pdf"_q))));
        const QString saved = receiver.ReadLine().value("saved"_q).toString();
        ASSERT_EQ(ReadFile(saved), "1");
        EXPECT_EQ(IsOpenToAll(saved), isOpen);
    }
}
