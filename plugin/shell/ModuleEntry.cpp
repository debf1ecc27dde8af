#include "plugin/boundary/PlugInTable.h"
#include "plugin/host/IPlugIn.h"

#include <qglobal.h>

extern "C" {
Q_DECL_EXPORT const hopbox_plugin_table* hopbox_plugin(uint32_t version);
IPlugIn* GetPlugIn();
}

// The entry for hosts of any compiler and language. The other one, GetPlugIn, is in the library.
const hopbox_plugin_table* hopbox_plugin(uint32_t version)
{
    return PlugInTable::Get(version, *GetPlugIn());
}
