#include "tiny_host.h"

#include <dlfcn.h>

FILE* tiny_open_file(const char* path, const char* mode)
{
    return fopen(path, mode);
}

hopbox_entry_function tiny_load_entry(const char* module)
{
    void* const library = dlopen(module == NULL ? TINY_MODULE : module, RTLD_NOW | RTLD_LOCAL);
    union {
        void* address;
        hopbox_entry_function function;
    } entry = {library == NULL ? NULL : dlsym(library, HOPBOX_ENTRY_NAME)};
    return entry.function;
}

void tiny_add_windows(hopbox_host_table* table) {}

/* Without a window there is only the plug-in's dialog. */
void tiny_run(tiny_host* host, const hopbox_plugin_table* plugin)
{
    plugin->do_action(HOPBOX_ACTION_DOCUMENT);
}

int main(int count, char** arguments)
{
    return tiny_main(count, arguments);
}
