#include "tiny_host.h"

#include <stdlib.h>
#include <string.h>

/* A program that is linked with the plug-in has the entry itself. */
#ifndef TINY_ENTRY
#define TINY_ENTRY tiny_load_entry(getenv("HOPBOX_PLUGIN"))
#endif

static void print_error(void* context, const char* bytes, size_t length)
{
    fprintf(stderr, "tiny-host: %.*s\n", (int)length, bytes);
}

/* 0 when all is done, 1 when something failed. */
static int work(tiny_host* host, const hopbox_plugin_table* plugin, int count, char** words)
{
    const hopbox_sink errors = {NULL, print_error};
    const hopbox_host_table table = tiny_make_table();
    const int has_package = count > 1 && strcmp(words[count - 1], "package") == 0;
    const int has_pages = count > 1 + has_package;
    const hopbox_text hopbox = {words[0], count > 0 ? strlen(words[0]) : 0};
    const hopbox_text pages = {has_pages ? words[1] : NULL, has_pages ? strlen(words[1]) : 0};
    int32_t result = plugin->load(&table, host, &errors);
    if (result != HOPBOX_OK)
        return 1;
    result = plugin->open_actions(&errors);
    if (result == HOPBOX_OK) {
        plugin->startup();
        if (count > 0)
            result = plugin->export_to(HOPBOX_ACTION_DOCUMENT, &hopbox, has_pages ? &pages : NULL,
                                       has_package, &errors);
        else
            tiny_run(host, plugin);
        plugin->shutdown();
    }
    return plugin->unload() != HOPBOX_OK || result != HOPBOX_OK || host->handle_count != 0;
}

int tiny_main(int count, char** arguments)
{
    const hopbox_entry_function entry = TINY_ENTRY;
    const hopbox_plugin_table* const plugin = entry == NULL ? NULL : entry(HOPBOX_VERSION);
    tiny_host host = {0};
    int status = 1;
    if (count < 2 || count > 5)
        status = 2, fputs("usage: tiny-host FILE [HOPBOX [PAGES] [package]]\n", stderr);
    else if (plugin == NULL || plugin->size < sizeof *plugin) /* without what is called here */
        fputs("tiny-host: the plug-in can't be loaded\n", stderr);
    else if (!tiny_open(&host, arguments[1]))
        fputs("tiny-host: the file can't be read\n", stderr);
    else
        status = work(&host, plugin, count - 2, arguments + 2);
    free(host.text);
    return status;
}
