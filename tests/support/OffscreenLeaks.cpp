#include <qglobal.h>

// What the leak sanitizer passes over in tests with windows: Qt's offscreen platform never frees its screen.
// Without the sanitizer nobody calls these.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions();
extern "C" Q_DECL_EXPORT const char* __lsan_default_options();

const char* __lsan_default_suppressions()
{
    return "leak:libqoffscreen.so\n";
}

const char* __lsan_default_options()
{
    return "print_suppressions=0";
}
