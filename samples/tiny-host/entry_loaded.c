#include "tiny_host.h"

hopbox_entry_function tiny_find_entry(const char* module)
{
    return tiny_load_entry(module);
}
