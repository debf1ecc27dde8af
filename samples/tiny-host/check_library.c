/* The library that hopbox-host-check loads to try this host's adaptor. */
#include "tiny_host.h"

#include <hopbox_adaptor.h>

#include <stdlib.h>
#include <string.h>

const hopbox_adaptor* hopbox_adaptor_entry(uint32_t version);

static int32_t open_sample(void* host, const hopbox_text* folder)
{
    char path[TINY_PATH];
    FILE* file;
    snprintf(path, sizeof path, "%.*s/Sample.txt", (int)folder->length, folder->bytes);
    file = tiny_open_file(path, "wb");
    if (file == NULL)
        return HOPBOX_FAILED;
    for (int line = 1; line <= 100; ++line)
        fprintf(file, "Line %d\n", line);
    return fclose(file) == 0 && tiny_open(host, path) ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t close_all(void* context)
{
    tiny_host* const host = context;
    free(host->text);
    host->text = NULL;
    return HOPBOX_OK;
}

static int32_t count_handles(void* host, int32_t* count)
{
    *count = ((tiny_host*)host)->handle_count;
    return HOPBOX_OK;
}

const hopbox_adaptor* hopbox_adaptor_entry(uint32_t version)
{
    static tiny_host host;
    static hopbox_host_table table;
    static hopbox_adaptor adaptor = {.size = sizeof adaptor,
                                     .version = HOPBOX_VERSION,
                                     .table = &table,
                                     .host = &host,
                                     .open_sample = open_sample,
                                     .close_all = close_all,
                                     .count_handles = count_handles};
    table = tiny_make_table();
    return version == HOPBOX_VERSION ? &adaptor : NULL;
}
