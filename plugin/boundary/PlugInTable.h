#pragma once

#include "plugin/boundary/hopbox_host.h"

class IPlugIn;

// The plug-in's table over its object, which stays as long as the process. One plug-in to a module: a second
// call gives the same table. Null for a version that is not served.
namespace PlugInTable
{
const hopbox_plugin_table* Get(uint32_t version, IPlugIn& plugIn);
}
