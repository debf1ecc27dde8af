#pragma once

#include "foundation/core/GString.h"

// What the operating system says about the user who runs this process.
class PSystem
{
public:
    // The name under which the user has logged on. On POSIX it is the name in the password database or, if
    // the database has none, the user's number. Never empty. It may contain characters that no file name can
    // have: make it safe before you use it as one. Any thread.
    static GString GetLogonName();
};
