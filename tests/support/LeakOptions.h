#pragma once

#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

// What the leak sanitizer passes over: Qt's offscreen platform never frees its screen.
constexpr const char* cPassedLeaks = "leak:libqoffscreen.so\n";
constexpr const char* cLeakOptions = "print_suppressions=0";

// The same as a value of LSAN_OPTIONS, for a program of ours that a test starts: a leak would be its exit
// status. Writes a file into the folder, which outlives the program.
inline QByteArray WriteLeakOptions(const QString& folder)
{
    const QString file = folder + "/leaks"_q;
    WriteFile(file, cPassedLeaks);
    return QByteArray(cLeakOptions) + ":suppressions=" + file.toUtf8();
}
