#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

#include <aclapi.h>
#include <sddl.h>
#include <windows.h>

namespace
{
// With this list, and nothing inherited.
bool SetRights(const QString& path, const wchar_t* text)
{
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const std::wstring name = QDir::toNativeSeparators(path).toStdWString();
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text, SDDL_REVISION_1, &descriptor, nullptr))
        return false;
    const bool isSet = SetFileSecurityW(name.c_str(), DACL_SECURITY_INFORMATION, descriptor) != 0;
    LocalFree(descriptor);
    return isSet;
}
}  // namespace

TEST_F(CommandTest, TheDoctorClosesFoldersThatOthersMayChange)
{
    ASSERT_EQ(Create("Press"_q), 0);
    PrinterProcessor receiver(mSandbox, {});
    const QString folder = GetPath("AppData/Morvane/Hopbox/Cache/Settings");
    ASSERT_TRUE(SetRights(folder, L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)(A;OICI;FR;;;WD)"));
    EXPECT_EQ(Run({"doctor"_q}), 0) << mOutput.toStdString();
    ASSERT_TRUE(SetRights(folder, L"D:(A;OICI;FA;;;OW)(A;OICI;FA;;;BA)(A;OICI;FA;;;WD)"));
    EXPECT_EQ(Run({"doctor"_q}), 1);
    EXPECT_TRUE(mOutput.contains("problem: Others may change the folder") &&
                mOutput.contains("    icacls \""))
        << mOutput.toStdString();
    EXPECT_EQ(Run({"doctor"_q, "--fix"_q}), 0);
    EXPECT_TRUE(mOutput.startsWith("mended: "));
    EXPECT_EQ(Run({"doctor"_q}), 0);
}
