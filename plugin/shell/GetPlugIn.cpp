#include "plugin/shell/PlugIn.h"

#include <qglobal.h>

#include <new>

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
