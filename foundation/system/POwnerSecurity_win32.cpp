#include "foundation/system/POwnerSecurity.h"

#include "foundation/system/PFileHandle.h"

#include <sddl.h>

#include <string>
#include <vector>

namespace
{
// The identifier of this process's user in its text form; empty when the system does not tell.
std::wstring GetUserIdentifier()
{
    HANDLE handle = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &handle))
        return {};
    const PFileHandle token(reinterpret_cast<intptr_t>(handle));
    DWORD size = 0;
    GetTokenInformation(handle, TokenUser, nullptr, 0, &size);
    std::vector<BYTE> bytes(size);
    if (size == 0 || !GetTokenInformation(handle, TokenUser, bytes.data(), size, &size))
        return {};
    wchar_t* text = nullptr;
    if (!ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(bytes.data())->User.Sid, &text))
        return {};
    std::wstring identifier = text;
    LocalFree(text);
    return identifier;
}
}  // namespace

POwnerSecurity::POwnerSecurity(const wchar_t* inheritance)
{
    mAttributes.nLength = sizeof mAttributes;
    const std::wstring user = GetUserIdentifier();
    if (user.empty())
        return;
    std::wstring text = L"D:P";
    for (const std::wstring& owner : {user, std::wstring(L"SY"), std::wstring(L"BA")})
        text += L"(A;" + std::wstring(inheritance) + L";GA;;;" + owner + L")";
    if (!ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1,
                                                              &mAttributes.lpSecurityDescriptor, nullptr))
        mAttributes.lpSecurityDescriptor = nullptr;
}

POwnerSecurity::~POwnerSecurity()
{
    LocalFree(mAttributes.lpSecurityDescriptor);
}
