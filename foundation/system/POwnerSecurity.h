#pragma once

#include <windows.h>

// The security attributes with which Windows makes an object that only this process's user, the system and
// the administrators may open. If they can't be made, Get gives null, and the object inherits its rights from
// its folder or from the user's token.
class POwnerSecurity
{
public:
    // `inheritance`: the flags that give the content of a folder the same rights, such as L"OICI".
    explicit POwnerSecurity(const wchar_t* inheritance = L"");
    ~POwnerSecurity();
    POwnerSecurity(const POwnerSecurity&) = delete;
    POwnerSecurity& operator=(const POwnerSecurity&) = delete;

    SECURITY_ATTRIBUTES* Get()
    {
        return mAttributes.lpSecurityDescriptor != nullptr ? &mAttributes : nullptr;
    }

private:
    SECURITY_ATTRIBUTES mAttributes{};
};
