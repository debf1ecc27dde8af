#include "tests/support/LeakOptions.h"

#include <qglobal.h>

// For the leak sanitizer in tests with windows; without it nobody calls these.
extern "C" Q_DECL_EXPORT const char* __lsan_default_suppressions();
extern "C" Q_DECL_EXPORT const char* __lsan_default_options();

const char* __lsan_default_suppressions()
{
    return cPassedLeaks;
}

const char* __lsan_default_options()
{
    return cLeakOptions;
}
