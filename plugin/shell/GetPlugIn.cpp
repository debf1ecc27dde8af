#include "plugin/shell/PlugIn.h"

#include <qglobal.h>

#include <new>

// The module's one exported entry.
extern "C" Q_DECL_EXPORT IPlugIn* GetPlugIn();

IPlugIn* GetPlugIn()
{
    // Never destroyed: a host may end without unloading, and then nothing of Qt's is there any more at the
    // process's end.
    alignas(PlugIn) static unsigned char storage[sizeof(PlugIn)];
    static PlugIn* const plugIn = new (storage) PlugIn;
    return plugIn;
}
