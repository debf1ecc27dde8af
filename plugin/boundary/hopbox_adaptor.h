/*
 * What hopbox-host-check asks a library for, so that it can try an adaptor without the host's windows: the
 * host's table with the pointer that goes with it, and hands to open and close a sample.
 *
 * The library's entry is HOPBOX_ADAPTOR_ENTRY_NAME, a hopbox_adaptor_function. What it gives stays as long as
 * the process. Threads, errors and texts are as in hopbox_host.h.
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

    /* Closes everything: no document is in front after it. */
    int32_t (*close_all)(void* host);

    /* The rest may be null: what needs it is not tried then. */

    /* How many handles the host has given and not got back. */
    int32_t (*count_handles)(void* host, int32_t* count);

    /* Has the user press Cancel during the next run_command that makes a PDF or a package. */
    int32_t (*cancel_next)(void* host);

    /* Brings a document to the front that has changed since it was saved, or has no file yet. Its
     * save_document writes to this path, as if the user had chosen it. */
    int32_t (*open_unsaved)(void* host, const hopbox_text* path);

    /* Has the user press a button of the next show_alert; buttons are counted from 1. */
    int32_t (*answer_alert)(void* host, int32_t button);

    /* Whether the host rests: from begin_modal until end_modal. */
    int32_t (*is_resting)(void* host, int32_t* is_resting);
} hopbox_adaptor;

#define HOPBOX_ADAPTOR_ENTRY_NAME "hopbox_adaptor_entry"
typedef const hopbox_adaptor* (*hopbox_adaptor_function)(uint32_t version);

#ifdef __cplusplus
}
#endif

#endif
