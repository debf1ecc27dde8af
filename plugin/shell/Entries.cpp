#include "plugin/shell/PlugIn.h"

#include "plugin/shell/RefusalText.h"

#include <qglobal.h>

#include <new>

#define HOPBOX_ENTRY Q_DECL_EXPORT
#include "plugin/boundary/PlugInTable.h"

// The entry for who shares the compiler: a host that loads the module, or an adaptor that links this library.
extern "C" Q_DECL_EXPORT IPlugIn* GetPlugIn();

IPlugIn* GetPlugIn()
{
    // Never destroyed: a host may end without unloading, and then nothing of Qt's is there any more at the
    // process's end.
    alignas(PlugIn) static unsigned char storage[sizeof(PlugIn)];
    static PlugIn* const plugIn = new (storage) PlugIn;
    return plugIn;
}

// The entry for hosts of any compiler and language.
const hopbox_plugin_table* hopbox_plugin(uint32_t version)
{
    return PlugInTable::Get(version, *GetPlugIn(), RefusalText::Translate);
}
