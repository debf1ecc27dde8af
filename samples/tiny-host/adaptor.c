/* The host as the plug-in sees it. What has no function here the plug-in does without: books, the name and
 * the saved state of a document, most settings of a PDF. */
#include "tiny_host.h"

#include <stdlib.h>
#include <string.h>

/* A handle is a pointer to one of these, or to the host for its document. */
typedef struct tiny_command
{
    int32_t kind;
    double bleed[4];
    uint32_t* pages;
    size_t page_count;
    char output[TINY_PATH];
} tiny_command;

static tiny_command* get_command(hopbox_handle handle)
{
    return (tiny_command*)(uintptr_t)handle;
}

static int32_t give(tiny_host* host, void* object, hopbox_handle* handle)
{
    *handle = (hopbox_handle)(uintptr_t)object;
    ++host->handle_count;
    return HOPBOX_OK;
}

static void release(void* context, hopbox_handle handle)
{
    --((tiny_host*)context)->handle_count;
    if ((void*)(uintptr_t)handle == context)
        return;
    free(get_command(handle)->pages);
    free(get_command(handle));
}

static int copy_text(char* to, const hopbox_text* text)
{
    return snprintf(to, TINY_PATH, "%.*s", (int)text->length, text->bytes) < TINY_PATH;
}

static int32_t is_action_known(void* host, int32_t action, int32_t* is_known)
{
    *is_known = ((tiny_host*)host)->action == action;
    return HOPBOX_OK;
}

static int32_t add_menu_item(void* host, int32_t action, const hopbox_text* menu, double position)
{
    if (menu->length != 10 || memcmp(menu->bytes, "Main:&File", 10) != 0)
        return HOPBOX_UNSUPPORTED;
    ((tiny_host*)host)->action = action;
    return HOPBOX_OK;
}

static int32_t get_front_document(void* context, hopbox_handle* document)
{
    tiny_host* const host = context;
    return host->text == NULL ? HOPBOX_NONE : give(host, host, document);
}

static int32_t get_document_file(void* host, hopbox_handle document, const hopbox_sink* path)
{
    path->put(path->context, ((tiny_host*)host)->path, strlen(((tiny_host*)host)->path));
    return HOPBOX_OK;
}

static int32_t get_page_count(void* host, hopbox_handle document, int32_t* count)
{
    if (document == 0)
        return HOPBOX_FAILED;
    *count = tiny_count_pages(host);
    return HOPBOX_OK;
}

static int32_t get_page(void* host, hopbox_handle document, int32_t index, uint32_t* page)
{
    if (index < 0 || index >= tiny_count_pages(host))
        return HOPBOX_FAILED;
    *page = (uint32_t)index + 1;
    return HOPBOX_OK;
}

/* At most 9 digits; 0 for none. */
static uint32_t take_number(const char** text, const char* end)
{
    uint32_t number = 0;
    for (int digit = 0; digit < 9 && *text < end && **text >= '0' && **text <= '9'; ++digit)
        number = number * 10 + (uint32_t)(*(*text)++ - '0');
    return number;
}

static int32_t get_pages_of_range(void* host, hopbox_handle document, const hopbox_text* range,
                                  const hopbox_page_sink* pages)
{
    const uint32_t count = (uint32_t)tiny_count_pages(host);
    const char* at = range->bytes;
    const char* const end = at + range->length;
    do {
        uint32_t page = take_number(&at, end);
        const int is_span = at < end && *at == '-';
        const uint32_t last = is_span ? (++at, take_number(&at, end)) : page;
        if (page == 0 || last < page || last > count || (at < end && *at != ','))
            return HOPBOX_FAILED;
        for (; page <= last; ++page)
            pages->put(pages->context, &page, 1);
    } while (at++ < end);
    return HOPBOX_OK;
}

/* Courier is in whatever shows a PDF. */
static int32_t get_missing_fonts(void* host, hopbox_handle document, const hopbox_sink* names)
{
    return HOPBOX_OK;
}

static int32_t create_command(void* host, int32_t kind, hopbox_handle* handle)
{
    const int is_known = kind == HOPBOX_EXPORT_DOCUMENT || kind == HOPBOX_PACKAGE_DOCUMENT;
    tiny_command* const command = is_known ? calloc(1, sizeof *command) : NULL;
    if (command == NULL)
        return is_known ? HOPBOX_FAILED : HOPBOX_UNSUPPORTED;
    command->kind = kind;
    return give(host, command, handle);
}

/* Nothing in job options concerns a page of Courier; but they have to be there. */
static int32_t read_job_options(void* host, hopbox_handle command, const hopbox_text* path)
{
    char name[TINY_PATH];
    FILE* const file = copy_text(name, path) ? tiny_open_file(name, "rb") : NULL;
    return file != NULL && fclose(file) == 0 ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t set_length(void* host, hopbox_handle command, int32_t setting, double points)
{
    if (setting < HOPBOX_BLEED_TOP || setting > HOPBOX_BLEED_OUTSIDE)
        return HOPBOX_UNSUPPORTED;
    if (!(points >= 0 && points < 1000))
        return HOPBOX_FAILED;
    get_command(command)->bleed[setting] = points;
    return HOPBOX_OK;
}

static int32_t set_output(void* host, hopbox_handle command, const hopbox_text* path)
{
    return copy_text(get_command(command)->output, path) ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t set_pages(void* host, hopbox_handle handle, hopbox_handle document, const uint32_t* pages,
                         size_t count, int32_t are_joined)
{
    tiny_command* const command = get_command(handle);
    free(command->pages);
    command->pages = malloc((count + 1) * sizeof *pages);
    command->page_count = command->pages == NULL ? 0 : count;
    memcpy(command->pages, pages, command->page_count * sizeof *pages);
    return command->pages == NULL ? HOPBOX_FAILED : HOPBOX_OK;
}

/* There is one document. */
static int32_t set_document(void* host, hopbox_handle command, hopbox_handle document)
{
    return HOPBOX_OK;
}

/* Writes a file into the package's folder. */
static int32_t add_file(const tiny_command* command, const char* leaf, const char* bytes, size_t length)
{
    char path[2 * TINY_PATH];
    snprintf(path, sizeof path, "%s/%s", command->output, leaf);
    FILE* const file = tiny_open_file(path, "wb");
    const int is_whole = file != NULL && fwrite(bytes, 1, length, file) == length;
    return file != NULL && fclose(file) == 0 && is_whole ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t run_command(void* context, hopbox_handle handle)
{
    const tiny_host* const host = context;
    const tiny_command* const command = get_command(handle);
    const char* leaf = host->path + strlen(host->path);
    if (command == NULL || command->output[0] == 0)
        return HOPBOX_FAILED;
    if (command->kind == HOPBOX_EXPORT_DOCUMENT)
        return command->pages != NULL && tiny_write_pdf(host, command->bleed, command->pages,
                                                        command->page_count, command->output)
                   ? HOPBOX_OK
                   : HOPBOX_FAILED;
    while (leaf > host->path && leaf[-1] != '/' && leaf[-1] != '\\')
        --leaf;
    return add_file(command, leaf, host->text, host->length);
}

static int32_t write_report(void* host, hopbox_handle package)
{
    const char* const path = ((tiny_host*)host)->path;
    return add_file(get_command(package), "Report.txt", path, strlen(path));
}

hopbox_host_table tiny_make_table(void)
{
    hopbox_host_table table = {.size = sizeof table,
                               .version = HOPBOX_VERSION,
                               .release = release,
                               .is_action_known = is_action_known,
                               .add_menu_item = add_menu_item,
                               .get_front_document = get_front_document,
                               .get_document_file = get_document_file,
                               .get_page_count = get_page_count,
                               .get_page = get_page,
                               .get_pages_of_range = get_pages_of_range,
                               .get_missing_fonts = get_missing_fonts,
                               .create_command = create_command,
                               .read_job_options = read_job_options,
                               .set_length = set_length,
                               .set_output = set_output,
                               .set_pages = set_pages,
                               .set_document = set_document,
                               .run_command = run_command,
                               .write_report = write_report};
    tiny_add_windows(&table);
    return table;
}
