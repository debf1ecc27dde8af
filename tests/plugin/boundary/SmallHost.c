/* SMALL_HOST_HEADER and SMALL_HOST say which form of the header, and under which name. */
#include SMALL_HOST_HEADER

#include "SmallHost.h"

#include <stdio.h>
#include <string.h>

#define TEXT_OF(name) #name
#define NAME_OF(name) TEXT_OF(name)

static int handles = 0;
static int entries = 0;
static char file[1000];
static char output[1000];
static const hopbox_plugin_table* plugin = NULL;

/* The table alone, so that whoever reads beyond its size reads what is not the host's. */
static hopbox_host_table table;

static void copy(char* to, size_t size, const hopbox_text* text)
{
    const size_t length = text->length < size - 1 ? text->length : size - 1;
    memcpy(to, text->bytes, length);
    to[length] = 0;
}

static void release(void* host, hopbox_handle object)
{
    --handles;
}

static int32_t is_action_known(void* host, int32_t action, int32_t* is_known)
{
    *is_known = 0;
    return HOPBOX_OK;
}

static int32_t add_menu_item(void* host, int32_t action, const hopbox_text* menu, double position)
{
    ++entries;
    return HOPBOX_OK;
}

static int32_t get_front_document(void* host, hopbox_handle* document)
{
    *document = 1;
    ++handles;
    return HOPBOX_OK;
}

static int32_t get_document_file(void* host, hopbox_handle document, const hopbox_sink* path)
{
    path->put(path->context, file, strlen(file));
    return HOPBOX_OK;
}

static int32_t get_page_count(void* host, hopbox_handle document, int32_t* count)
{
    *count = 1;
    return HOPBOX_OK;
}

static int32_t get_page(void* host, hopbox_handle document, int32_t index, uint32_t* page)
{
    *page = (uint32_t)index + 1;
    return HOPBOX_OK;
}

static int32_t get_missing_fonts(void* host, hopbox_handle document, const hopbox_sink* names)
{
    return HOPBOX_OK;
}

static int32_t create_command(void* host, int32_t kind, hopbox_handle* command)
{
    if (kind != HOPBOX_EXPORT_DOCUMENT)
        return HOPBOX_UNSUPPORTED;
    *command = 2;
    ++handles;
    return HOPBOX_OK;
}

static int32_t read_job_options(void* host, hopbox_handle command, const hopbox_text* path)
{
    return path->length > 0 ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t set_output(void* host, hopbox_handle command, const hopbox_text* path)
{
    copy(output, sizeof output, path);
    return HOPBOX_OK;
}

static int32_t set_pages(void* host, hopbox_handle command, hopbox_handle document, const uint32_t* pages,
                         size_t count, int32_t are_joined)
{
    return command == 2 && document == 1 && count == 1 && pages[0] == 1 ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t run_command(void* host, hopbox_handle command)
{
    FILE* const pdf = fopen(output, "wb");
    if (pdf == NULL)
        return HOPBOX_FAILED;
    fputs("%PDF-1.4\n%%EOF\n", pdf);
    return fclose(pdf) == 0 ? HOPBOX_OK : HOPBOX_FAILED;
}

static void keep_error(void* context, const char* bytes, size_t length)
{
    const hopbox_text text = {bytes, length};
    copy(context, 200, &text);
}

static int begin(hopbox_entry_function entry, const char* prefix, char* error)
{
    const hopbox_sink sink = {error, keep_error};

    memset(&table, 0, sizeof table);
    table.size = sizeof table;
    table.version = HOPBOX_VERSION;
    table.release = release;
    table.is_action_known = is_action_known;
    table.add_menu_item = add_menu_item;
    table.get_front_document = get_front_document;
    table.get_document_file = get_document_file;
    table.get_page_count = get_page_count;
    table.get_page = get_page;
    table.get_missing_fonts = get_missing_fonts;
    table.create_command = create_command;
    table.read_job_options = read_job_options;
    table.set_output = set_output;
    table.set_pages = set_pages;
    table.run_command = run_command;

    snprintf(file, sizeof file, "%s.txt", prefix);
    plugin = entry(HOPBOX_VERSION);
    if (plugin->load(&table, NULL, &sink) != HOPBOX_OK || plugin->open_actions(&sink) != HOPBOX_OK)
        return 1;
    return plugin->startup() == HOPBOX_OK ? 0 : 2;
}

static int choose(void)
{
    return plugin->do_action(HOPBOX_ACTION_DOCUMENT);
}

static int end(void)
{
    return plugin->shutdown() == HOPBOX_OK && plugin->close_actions() == HOPBOX_OK ? plugin->unload() : 1;
}

static int count_handles(void)
{
    return handles;
}

static int count_entries(void)
{
    return entries;
}

const SmallHost SMALL_HOST = {NAME_OF(SMALL_HOST), begin, choose, end, count_handles, count_entries};
