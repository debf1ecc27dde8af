/*
 * What hopbox-host-check needs from a library, so that it can try an adaptor without the host's windows: the
 * host's table with its pointer, and functions that open and close a sample.
 *
 * The library's entry is HOPBOX_ADAPTOR_ENTRY_NAME, a hopbox_adaptor_function. What that function gives must
 * stay until the process ends. Threads, errors and texts are as in hopbox_host.h.
 */
#ifndef HOPBOX_ADAPTOR_H
#define HOPBOX_ADAPTOR_H

#include "hopbox_host.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct hopbox_adaptor
{
    uint32_t size;    /* sizeof(hopbox_adaptor) */
    uint32_t version; /* HOPBOX_VERSION */

    const hopbox_host_table* table;
    void* host;

    /* Makes a document of at least two pages whose file lies in an empty folder, opens it and brings it to
     * the front. A host with books makes a book of at least one document there as well, and opens it. */
    int32_t (*open_sample)(void* host, const hopbox_text* folder);

    /* Closes everything: after it no document is in front. */
    int32_t (*close_all)(void* host);

    /* The functions below may be null: a check that needs a missing one is left out. */

    /* How many handles the host has given out and not yet got back. */
    int32_t (*count_handles)(void* host, int32_t* count);

    /* Makes the next run_command for a PDF or a package behave as if the user pressed Cancel during it. */
    int32_t (*cancel_next)(void* host);

    /* Brings to the front a document that has changed since it was saved, or that has no file yet. Its
     * save_document writes to this path, as if the user had chosen it. */
    int32_t (*open_unsaved)(void* host, const hopbox_text* path);

    /* Makes the next show_alert behave as if the user pressed this button; buttons are counted from 1. */
    int32_t (*answer_alert)(void* host, int32_t button);

    /* Whether the host rests, which it does from begin_modal until end_modal. */
    int32_t (*is_resting)(void* host, int32_t* is_resting);
} hopbox_adaptor;

#define HOPBOX_ADAPTOR_ENTRY_NAME "hopbox_adaptor_entry"
typedef const hopbox_adaptor* (*hopbox_adaptor_function)(uint32_t version);

#ifdef __cplusplus
}
#endif

#endif
