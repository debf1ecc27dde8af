#include "hosts/scribus/pdf/SettingsReport.h"

#include <cstdio>

int main()
{
    std::fputs(SettingsReport::MakePage().constData(), stdout);
    return 0;
}
