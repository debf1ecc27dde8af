#ifndef HOPBOX_TESTS_SMALL_HOST_H
#define HOPBOX_TESTS_SMALL_HOST_H

#include "plugin/boundary/hopbox_host.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A host in C with one document of one page, compiled once for each form of the header. */
typedef struct SmallHost
{
    const char* name;

    /* Loads the plug-in, for a document whose files are below a prefix of paths; opens its actions. 0 on
     * success; else the reason is in `error`, which holds 200 bytes. */
    int (*begin)(hopbox_entry_function entry, const char* prefix, char* error);

    int (*choose)(void); /* the entry for documents, in the menu; 0 on success */
    int (*end)(void);    /* unloads; 0 on success */

    int (*count_handles)(void); /* that were not released */
    int (*count_entries)(void); /* menu entries that the plug-in has added */
} SmallHost;

extern const SmallHost earlier_host;
extern const SmallHost present_host;
extern const SmallHost later_host;

#ifdef __cplusplus
}
#endif

#endif
