#pragma once

#include "foundation/core/GString.h"
#include "plugin/boundary/hopbox_host.h"

class IPlugIn;

// The plug-in's table over its object, which stays as long as the process. One plug-in to a module: a second
// call gives the same table. Null for a version that is not served. `translate` gives a text of a context in
// the user's language.
namespace PlugInTable
{
using Translator = GString (*)(const char* context, const char* text);

const hopbox_plugin_table* Get(uint32_t version, IPlugIn& plugIn, Translator translate);
}  // namespace PlugInTable
