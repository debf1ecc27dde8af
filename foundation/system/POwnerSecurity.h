#pragma once

#include <windows.h>

// What Windows' calls take to make an object that nobody but this process's user, the system and the
// administrators may open. Where it can't be composed, Get gives null, and the object gets what it inherits
// from its folder or from the user's token.
class POwnerSecurity
{
public:
    // `inheritance`: the flags with which what lies in a folder gets the same rights, such as L"OICI".
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
