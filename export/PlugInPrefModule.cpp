#include "export/PlugInPrefModule.h"

PlugInPrefModule::PlugInPrefModule(const GPathName& path) : GPrefSharedFileModule(path, GEncoding::GetUTF16())
{
}

void PlugInPrefModule::WriteDict()
{
    if (IsDirty())
        ChangeUnderLock([](GPrefModule&) {});
}
