/*
 * The boundary between a layout application (the host) and the module "Export to Hopbox" (the plug-in).
 *
 * Plain C11 for any compiler: two tables of functions, opaque handles, texts as pointer and length, errors by
 * value. A host in any language needs this header alone, and no library to link.
 *
 * How a host uses it:
 *   1. It loads the module and finds the entry HOPBOX_ENTRY_NAME, a hopbox_entry_function.
 *   2. It calls the entry with HOPBOX_VERSION and gets the plug-in's table.
 *   3. It calls `load` with its own table, `open_actions`, and `startup` once its menus can be filled.
 *   4. It asks `get_action_state` before it shows a menu, and calls `do_action` on a choice.
 *   5. At the end it calls `shutdown`, `close_actions`, `unload`. The module stays in memory until the
 * process ends, and can be loaded again.
 *
 * Threads. Every call, in both directions, comes on one thread: the host's main thread, the one that called
 * `load`. A call from another thread changes nothing and gives HOPBOX_WRONG_THREAD.
 *
 * Re-entry. While `do_action` or `export_to` runs, it calls the host's operations, shows windows and handles
 * events, so the host's own code may run inside it. During that time another `do_action` only brings the open
 * window to the front, and another `export_to` gives HOPBOX_BUSY. If a process has two modules, an action of
 * the other one counts, too. `close_actions` and `unload` give HOPBOX_BUSY and change nothing during that
 * time, and when they are called from inside any function of the host's table.
 *
 * Errors. An operation gives HOPBOX_OK or says why not. A number that is not in hopbox_result counts as
 * HOPBOX_FAILED. Nothing may be thrown or jumped across the boundary. An operation that does not give
 * HOPBOX_OK changes nothing that its pointers point to. What it has put into a sink is not used then.
 *
 * Sizes and versions. Each table begins with its size in bytes and its version, which the side that makes it
 * fills in with sizeof and HOPBOX_VERSION. While the version stays the same, new functions are only added at
 * the end. A side calls only functions that lie whole within the other table's size. A function that is
 * missing or null counts as one that gives HOPBOX_UNSUPPORTED. A table of another version is refused.
 *
 * Handles. Numbers that the host chooses, such as pointers or places in a table. 0 means no object; an
 * operation on it fails. Each handle that an operation gives belongs to the plug-in, which gives it back once
 * with `release`. If the host gives a number twice, it must count: that number is released twice. The plug-in
 * gives all handles back before `do_action`, `export_to`, `get_action_state`, `startup`, `shutdown` or
 * `unload` returns.
 *
 * Texts. UTF-8 with a length in bytes, without a zero byte at the end; at most HOPBOX_LONGEST_TEXT bytes. A
 * longer text, a null pointer with a length, and a list of more than 100,000 texts are faults. The other side
 * may read a text until the call returns, and never keeps or frees it. Texts come back through a sink.
 *
 * Paths are full paths in the system's own form, as texts. Lengths are in points (1/72 inch). Page numbers
 * are those that the user sees. Yes is the int32_t 1, no is 0.
 */
#ifndef HOPBOX_HOST_H
#define HOPBOX_HOST_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define HOPBOX_VERSION 1u
#define HOPBOX_LONGEST_TEXT (1024u * 1024u)

/* What operations give. */
enum hopbox_result
{
    HOPBOX_OK = 0,
    HOPBOX_NONE = 1,        /* there is no such thing: no document in front, no file, no font list */
    HOPBOX_FAILED = 2,      /* it was tried without success */
    HOPBOX_CANCELLED = 3,   /* the user has cancelled: the export ends, without an alert */
    HOPBOX_BUSY = 4,        /* not possible while another call runs */
    HOPBOX_UNSUPPORTED = 5, /* this side does not know the operation, or the value that it was given */
    HOPBOX_WRONG_THREAD = 6 /* not the thread that called `load` */
};

typedef uint64_t hopbox_handle;

typedef struct hopbox_text
{
    const char* bytes;
    size_t length;
} hopbox_text;

/* Takes a text and copies it. An operation that gives one text calls `put` once; an operation that gives a
 * list calls it once for each text. `context` is passed through. */
typedef struct hopbox_sink
{
    void* context;
    void (*put)(void* context, const char* bytes, size_t length);
} hopbox_sink;

/* Takes pages and copies them; may be called more than once. At most a million pages are taken. */
typedef struct hopbox_page_sink
{
    void* context;
    void (*put)(void* context, const uint32_t* pages, size_t count);
} hopbox_page_sink;

/* Used in place of 0 or 1: the Hopbox's own settings decide. */
#define HOPBOX_AS_SET (-1)

/* Units in which a host shows lengths. */
enum hopbox_unit
{
    HOPBOX_POINTS = 0,
    HOPBOX_PICAS = 1,
    HOPBOX_INCHES = 2,
    HOPBOX_CENTIMETRES = 3,
    HOPBOX_MILLIMETRES = 4
};

/* The plug-in's actions. Their class is the number of the about action. */
enum hopbox_action
{
    HOPBOX_ACTION_ABOUT = 1674240,
    HOPBOX_ACTION_DOCUMENT = 1674244,
    HOPBOX_ACTION_BOOK = 1674246
};

/* Commands: a command is made, told what to do, run once and released. */
enum hopbox_command
{
    HOPBOX_EXPORT_DOCUMENT = 1,  /* job options, settings, pages, name, output file */
    HOPBOX_PDF_PREFERENCES = 2,  /* job options, settings: they become those of the next HOPBOX_EXPORT_BOOK */
    HOPBOX_EXPORT_BOOK = 3,      /* book, output file */
    HOPBOX_PACKAGE_DOCUMENT = 4, /* document, package settings, output folder */
    HOPBOX_PACKAGE_BOOK = 5      /* book, package settings, output folder */
};

/* Settings of a PDF that are on or off. */
enum hopbox_switch
{
    HOPBOX_USE_DOCUMENT_BLEED = 0, /* the document's own bleed instead of the four lengths */
    HOPBOX_INCLUDE_SLUG = 1,
    HOPBOX_CROP_MARKS = 2,
    HOPBOX_BLEED_MARKS = 3,
    HOPBOX_REGISTRATION_MARKS = 4,
    HOPBOX_COLOR_BARS = 5,
    HOPBOX_PAGE_INFORMATION = 6,
    HOPBOX_SWITCHES /* how many there are; the same below */
};

/* Settings of a PDF that are lengths. */
enum hopbox_length
{
    HOPBOX_BLEED_TOP = 0,
    HOPBOX_BLEED_BOTTOM = 1,
    HOPBOX_BLEED_INSIDE = 2,
    HOPBOX_BLEED_OUTSIDE = 3,
    HOPBOX_MARK_OFFSET = 4, /* from the page's edge to the marks */
    HOPBOX_MARK_WEIGHT = 5, /* the width of their lines */
    HOPBOX_LENGTHS
};

/* Settings of a package. */
enum hopbox_package_setting
{
    HOPBOX_PACKAGE_FONTS = 0,
    HOPBOX_PACKAGE_LINKS = 1,
    HOPBOX_PACKAGE_PROFILES = 2,
    HOPBOX_PACKAGE_UPDATE_GRAPHICS = 3,
    HOPBOX_PACKAGE_HIDDEN_LAYERS = 4,
    HOPBOX_PACKAGE_IGNORE_ERRORS = 5, /* go on where a link or font is missing */
    HOPBOX_PACKAGE_REPORT = 6,        /* the host's own report, apart from write_report */
    HOPBOX_PACKAGE_DOCUMENT_HYPHENATION = 7,
    HOPBOX_PACKAGE_SETTINGS
};

/*
 * The host's table. `host` is the pointer that was given to `load` with the table; the plug-in never looks
 * into it. Every function may be null: the comment says what the plug-in does without it. Table and pointer
 * must stay until `unload` gives HOPBOX_OK.
 */
typedef struct hopbox_host_table
{
    uint32_t size;    /* sizeof(hopbox_host_table) */
    uint32_t version; /* HOPBOX_VERSION */

    /* Takes a handle back. Null in a host that does not count its handles. */
    void (*release)(void* host, hopbox_handle object);

    /* --- The application --- */

    /* The unit in which lengths are shown, of hopbox_unit. Without it: points. */
    int32_t (*get_unit)(void* host, int32_t* unit);

    /* Shows an alert with up to three buttons; one without a text is not shown. Gives the number (1 to 3) of
     * the button pressed. `default_button` is what Enter presses, `cancel_button` what Escape presses.
     * Without it: no About box; for exports the plug-in shows alerts of its own. */
    int32_t (*show_alert)(void* host, const hopbox_text* text, const hopbox_text buttons[3],
                          int32_t default_button, int32_t cancel_button, int32_t* pressed);

    /* From begin_modal until end_modal the host rests: its menus, panels and shortcuts do not react.
     * end_modal gets the token that begin_modal gave, not 0. Without them the host does not rest. */
    int32_t (*begin_modal)(void* host, uint64_t* token);
    void (*end_modal)(void* host, uint64_t token);

    /* --- Menus --- */

    /* Whether the host already has an action, from an earlier start or session. Without it, or if it does not
     * give HOPBOX_OK, the host makes actions and entries itself: the next two are not called. */
    int32_t (*is_action_known)(void* host, int32_t action, int32_t* is_known);

    /* Adds an action. `area` groups actions where the user edits shortcuts. The name and shortcut come from
     * get_action_state, each time a menu is shown. Without it: only menu items are added. */
    int32_t (*add_action)(void* host, int32_t action, const hopbox_text* area);

    /* Puts an action into the menu with a path such as "Main:&File". The menu's entries stand in the order of
     * their positions. Without it: only actions are added. */
    int32_t (*add_menu_item)(void* host, int32_t action, const hopbox_text* menu, double position);

    /* --- Documents --- */

    /* The document in front, or HOPBOX_NONE. With HOPBOX_NONE or without it: the menu entry is off. */
    int32_t (*get_front_document)(void* host, hopbox_handle* document);

    /* The document of a file if it is open, with or without a window; else HOPBOX_NONE. This and the next two
     * are for the documents of books. Without it: none is open. */
    int32_t (*find_open_document)(void* host, const hopbox_text* path, hopbox_handle* document);

    /* Opens a document without a window and without a question. HOPBOX_NONE: opened, but it gave no document;
     * the user is told that it is invalid. Other errors: the user is told that it can't be opened. Without
     * it: documents of a book can be exported only if they are open. */
    int32_t (*open_document)(void* host, const hopbox_text* path, hopbox_handle* document);

    /* Closes a document that open_document has opened, at once and without a question. The handle is released
     * after that. Without it, or if it does not give HOPBOX_OK: the document stays open, and the export goes
     * on. */
    int32_t (*close_document)(void* host, hopbox_handle document);

    /* Whether the file holds the current state of the document. Without it: it does. */
    int32_t (*is_document_saved)(void* host, hopbox_handle document, int32_t* is_saved);

    /* Saves a document to its file; if there is none, the host asks for one. Without it: an unsaved document
     * is not exported. */
    int32_t (*save_document)(void* host, hopbox_handle document);

    /* The document's file, or HOPBOX_NONE if it was never saved; and the name in its window's title. PDF and
     * package get the file's name, or the document's if there is no file, cut before its last dot. Without
     * them: there is none. */
    int32_t (*get_document_file)(void* host, hopbox_handle document, const hopbox_sink* path);
    int32_t (*get_document_name)(void* host, hopbox_handle document, const hopbox_sink* name);

    /* The number of pages, and the page at an index from 0. A page is a number that the host chooses, not 0.
     * Without them no document can be exported as a whole. */
    int32_t (*get_page_count)(void* host, hopbox_handle document, int32_t* count);
    int32_t (*get_page)(void* host, hopbox_handle document, int32_t index, uint32_t* page);

    /* The pages that a text such as "1-3,8" names, in the order of the text and as often as it names them.
     * HOPBOX_FAILED if it names a page that the document does not have. Shows no message. Without it: no
     * range of pages is exported. */
    int32_t (*get_pages_of_range)(void* host, hopbox_handle document, const hopbox_text* range,
                                  const hopbox_page_sink* pages);

    /* The names of the fonts that a document uses and the host does not have. If no font is missing:
     * HOPBOX_OK, and no text. HOPBOX_NONE, or without it: the host can't tell, and a document in front is not
     * exported. */
    int32_t (*get_missing_fonts)(void* host, hopbox_handle document, const hopbox_sink* names);

    /* --- Books; a host without books leaves them all null --- */

    /* The book whose panel is in front, or HOPBOX_NONE: the book's menu entry is off then. */
    int32_t (*get_active_book)(void* host, hopbox_handle* book);

    /* The same as for a document, also when the functions are missing. */
    int32_t (*get_book_file)(void* host, hopbox_handle book, const hopbox_sink* path);
    int32_t (*get_book_name)(void* host, hopbox_handle book, const hopbox_sink* name);

    /* Whether the book differs from its file; and writes it to that file. Without them: it does not
     * differ. */
    int32_t (*is_book_modified)(void* host, hopbox_handle book, int32_t* is_modified);
    int32_t (*save_book)(void* host, hopbox_handle book);

    /* The number of documents of a book, and the file of the one at an index from 0. HOPBOX_NONE for the
     * number means that the book has no list: its menu entry is off then, and it is not exported. */
    int32_t (*get_book_document_count)(void* host, hopbox_handle book, int32_t* count);
    int32_t (*get_book_document_file)(void* host, hopbox_handle book, int32_t index, const hopbox_sink* path);

    /* --- Commands --- */

    /* Makes a command of hopbox_command, without settings; HOPBOX_UNSUPPORTED if the host does not have it.
     * Without create_command, read_job_options, set_output or run_command: nothing is exported.
     * Without set_pages: no document is exported.
     * Without set_document: no document is packaged.
     * Without set_book: no book is exported or packaged. */
    int32_t (*create_command)(void* host, int32_t kind, hopbox_handle* command);

    /* Takes all settings of a PDF from a job options file; on HOPBOX_FAILED they stay as they were.
     * HOPBOX_UNSUPPORTED and a missing function mean that the command has no such settings; the user is told
     * which of the two it is. The same holds for set_output, set_book and write_report. */
    int32_t (*read_job_options)(void* host, hopbox_handle command, const hopbox_text* path);

    /* One setting of hopbox_switch or hopbox_length, after the job options. Without these, or if they give
     * HOPBOX_UNSUPPORTED, the export goes on without the setting. */
    int32_t (*set_switch)(void* host, hopbox_handle command, int32_t setting, int32_t is_on);
    int32_t (*set_length)(void* host, hopbox_handle command, int32_t setting, double points);

    /* Whether the pages of a spread become one page. Without these: they don't. */
    int32_t (*get_spreads)(void* host, hopbox_handle command, int32_t* are_joined);
    int32_t (*set_spreads)(void* host, hopbox_handle command, int32_t are_joined);

    /* The file or folder for the result. The plug-in has made it, empty, so that no other process takes its
     * name; the host replaces or fills it. */
    int32_t (*set_output)(void* host, hopbox_handle command, const hopbox_text* path);

    /* The pages of a document in the order in which they are to be exported; a page may be there twice. */
    int32_t (*set_pages)(void* host, hopbox_handle command, hopbox_handle document, const uint32_t* pages,
                         size_t count, int32_t are_joined);

    /* The name for progress windows and the PDF's title. Without it: the host's choice. */
    int32_t (*set_name)(void* host, hopbox_handle command, const hopbox_text* name);

    /* The document to package; the book to export or package, with all of its documents in their order. */
    int32_t (*set_document)(void* host, hopbox_handle command, hopbox_handle document);
    int32_t (*set_book)(void* host, hopbox_handle command, hopbox_handle book);

    /* One setting of hopbox_package_setting. Without it, or on HOPBOX_UNSUPPORTED, the package is made
     * without the setting. */
    int32_t (*set_package_setting)(void* host, hopbox_handle command, int32_t setting, int32_t is_on);

    /* Does all of the work before it returns. HOPBOX_OK means that the PDF or the filled folder is there; the
     * plug-in checks that. If the user pressed Cancel in the host's progress window, the host removes what
     * the command made and gives HOPBOX_CANCELLED, even if all of the work was done. */
    int32_t (*run_command)(void* host, hopbox_handle command);

    /* Writes a report about a document's package into the folder of that package, which the command has made.
     * Without it a document's package fails. */
    int32_t (*write_report)(void* host, hopbox_handle package);
} hopbox_host_table;

/*
 * The plug-in's table, which stays as long as the module. A module has one plug-in.
 */
typedef struct hopbox_plugin_table
{
    uint32_t size;    /* sizeof(hopbox_plugin_table) */
    uint32_t version; /* HOPBOX_VERSION */

    /* Takes the host's table and the pointer that goes with it. HOPBOX_FAILED, with the reason for the user
     * in `error`, if there is no table, if its version differs, or if the plug-in has a host already. `error`
     * may be null here and below. */
    int32_t (*load)(const hopbox_host_table* table, void* host, const hopbox_sink* error);

    /* Starts what the actions need: settings, texts, and Qt's windows unless the process has them.
     * HOPBOX_FAILED, with the reason in `error`, if it can't, for example without a display. */
    int32_t (*open_actions)(const hopbox_sink* error);

    /* `startup` adds the actions and menu entries that the host does not know yet; `shutdown` tells the
     * plug-in that the host's session ends. HOPBOX_NONE before `load`. */
    int32_t (*startup)(void);
    int32_t (*shutdown)(void);

    /* Ends what open_actions started. HOPBOX_BUSY while an action runs, and from inside a function of the
     * host's table. */
    int32_t (*close_actions)(void);

    /* Gives the host's table back, and closes the actions first if they are open. HOPBOX_BUSY when
     * close_actions would give it: table and host must stay then. */
    int32_t (*unload)(void);

    /* What an action's entry must show now: whether it is on, its name in the user's language, and its
     * default shortcut, such as "Alt+Shift+E". The sinks may be null. HOPBOX_NONE when the actions are not
     * open, for the about action, and for actions that are not the plug-in's: the host itself looks after
     * their entries. */
    int32_t (*get_action_state)(int32_t action, int32_t* is_on, const hopbox_sink* name,
                                const hopbox_sink* shortcut);

    /* The user chose an action of hopbox_action. Returns when its windows are closed and its export is over.
     * Errors are shown to the user, not told to the host. HOPBOX_NONE when the actions are not open. */
    int32_t (*do_action)(int32_t action);

    /* The folder of the plug-in's own resources. */
    int32_t (*get_resource_folder)(const hopbox_sink* path);

    /* Exports without a dialog and without an alert, for a host's command line and scripts: what do_action
     * does once the user has made these choices. `hopbox` is a Hopbox's name or registry key, `pages` a text
     * such as "1-3,8", null or empty for all, `includes_package` 0, 1 or HOPBOX_AS_SET. HOPBOX_OK when a
     * Hopbox process has taken the result; HOPBOX_FAILED with the text of the alert in `error`;
     * HOPBOX_CANCELLED when the host's command gave that; HOPBOX_BUSY while an action runs; HOPBOX_NONE when
     * the actions are not open; HOPBOX_UNSUPPORTED for an action that exports nothing, and for pages of a
     * book. */
    int32_t (*export_to)(int32_t action, const hopbox_text* hopbox, const hopbox_text* pages,
                         int32_t includes_package, const hopbox_sink* error);
} hopbox_plugin_table;

/* The module's entry. Gives null for a version that the module does not know. */
#define HOPBOX_ENTRY_NAME "hopbox_plugin"
typedef const hopbox_plugin_table* (*hopbox_entry_function)(uint32_t version);

/* The same entry for a host that links the plug-in instead of loading it. */
#ifndef HOPBOX_ENTRY
#define HOPBOX_ENTRY
#endif
HOPBOX_ENTRY const hopbox_plugin_table* hopbox_plugin(uint32_t version);

#ifdef __cplusplus
}
#endif

#endif
