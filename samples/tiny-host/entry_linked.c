#include "tiny_host.h"

hopbox_entry_function tiny_find_entry(const char* module)
{
    return hopbox_plugin;
}
