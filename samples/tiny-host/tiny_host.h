/* A host of text files. One document is open; it has a file, a page count and nothing unsaved. */
#ifndef TINY_HOST_H
#define TINY_HOST_H

#include <hopbox_host.h>

#include <stdio.h>

#define TINY_PATH 2048

typedef struct tiny_host
{
    char path[TINY_PATH]; /* of the open document, UTF-8 */
    char* text;           /* null while none is open */
    size_t length;
    int handle_count; /* given to the plug-in and not yet given back */
    int32_t action;   /* the plug-in's entry of the File menu; 0 for none */
} tiny_host;

/* document.c. The first two give 0 when a file can't be read or written whole. Bleed is in points, in the
 * order of hopbox_length. */
int tiny_open(tiny_host* host, const char* path);
int tiny_write_pdf(const tiny_host* host, const double bleed[4], const uint32_t* pages, size_t count,
                   const char* path);
int32_t tiny_count_pages(const tiny_host* host);

/* adaptor.c. The functions of the table take a tiny_host. */
hopbox_host_table tiny_make_table(void);

/* main.c. The arguments are UTF-8. */
int tiny_main(int count, char** arguments);

/* system_posix.c and system_win32.c: files by UTF-8; the entry of a module, TINY_MODULE for null; what of the
 * table needs windows; and the user's work with the open document until it is done. */
FILE* tiny_open_file(const char* path, const char* mode);
hopbox_entry_function tiny_load_entry(const char* module);
void tiny_add_windows(hopbox_host_table* table);
void tiny_run(tiny_host* host, const hopbox_plugin_table* plugin);

#endif
