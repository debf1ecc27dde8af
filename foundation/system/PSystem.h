#pragma once

#include "foundation/core/GString.h"

// What the operating system says of whoever runs this process.
class PSystem
{
public:
    // The name under which the user has logged on. On POSIX that of the process's user in the password
    // database, or the user's number where the database has none. Never empty. It may hold what no file name
    // can: make it safe before it becomes one. Any thread.
    static GString GetLogonName();
};
