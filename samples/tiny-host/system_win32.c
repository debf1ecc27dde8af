#include "tiny_host.h"

#include <windows.h>

#include <shellapi.h>
#include <string.h>

#define COMMAND_PLUGIN 1

static HWND window;
static tiny_host* shown;
static const hopbox_plugin_table* actions;

FILE* tiny_open_file(const char* path, const char* mode)
{
    wchar_t name[TINY_PATH];
    MultiByteToWideChar(CP_UTF8, 0, path, -1, name, TINY_PATH);
    return _wfopen(name, mode[0] == 'r' ? L"rb" : L"wb");
}

/* By the other search path, as the module's own libraries lie beside it. */
hopbox_entry_function tiny_load_entry(const char* module)
{
    wchar_t name[TINY_PATH];
    hopbox_entry_function entry;
    FARPROC address;
    HMODULE library;
    MultiByteToWideChar(CP_UTF8, 0, module == NULL ? TINY_MODULE : module, -1, name, TINY_PATH);
    library = LoadLibraryExW(name, NULL, LOAD_WITH_ALTERED_SEARCH_PATH);
    address = library == NULL ? NULL : GetProcAddress(library, HOPBOX_ENTRY_NAME);
    memcpy(&entry, &address, sizeof entry);
    return entry;
}

static int32_t begin_modal(void* host, uint64_t* token)
{
    *token = 1;
    EnableWindow(window, FALSE);
    return HOPBOX_OK;
}

static void end_modal(void* host, uint64_t token)
{
    EnableWindow(window, TRUE);
    SetForegroundWindow(window);
}

void tiny_add_windows(hopbox_host_table* table)
{
    table->begin_modal = begin_modal;
    table->end_modal = end_modal;
}

static void keep_text(void* context, const char* bytes, size_t length)
{
    wchar_t* const text = context;
    text[MultiByteToWideChar(CP_UTF8, 0, bytes, length < 99 ? (int)length : 99, text, 99)] = 0;
}

/* The name and state of the plug-in's entry, each time that the menu opens. */
static void update_menu(HMENU menu)
{
    wchar_t text[100] = L"";
    const hopbox_sink name = {text, keep_text};
    int32_t is_on = 0;
    actions->get_action_state(shown->action, &is_on, &name, NULL);
    ModifyMenuW(menu, COMMAND_PLUGIN, is_on ? 0u : MF_GRAYED, COMMAND_PLUGIN, text);
}

/* For a shortcut such as "Alt+Shift+E". */
static HACCEL make_shortcut(void)
{
    wchar_t text[100] = L"";
    const hopbox_sink shortcut = {text, keep_text};
    ACCEL key = {.fVirt = FVIRTKEY, .cmd = COMMAND_PLUGIN};
    actions->get_action_state(shown->action, NULL, NULL, &shortcut);
    key.key = text[0] == 0 ? 0 : text[wcslen(text) - 1];
    key.fVirt |= wcsstr(text, L"Alt+") != NULL ? FALT : 0;
    key.fVirt |= wcsstr(text, L"Shift+") != NULL ? FSHIFT : 0;
    key.fVirt |= wcsstr(text, L"Ctrl+") != NULL ? FCONTROL : 0;
    return CreateAcceleratorTableW(&key, 1);
}

static LRESULT CALLBACK handle(HWND target, UINT message, WPARAM first, LPARAM second)
{
    if (message == WM_INITMENUPOPUP)
        update_menu((HMENU)first);
    else if (message == WM_COMMAND && LOWORD(first) == COMMAND_PLUGIN)
        actions->do_action(shown->action);
    else if (message == WM_DESTROY)
        PostQuitMessage(0);
    else
        return DefWindowProcW(target, message, first, second);
    return 0;
}

void tiny_run(tiny_host* host, const hopbox_plugin_table* plugin)
{
    const WNDCLASSW kind = {.lpfnWndProc = handle, .lpszClassName = L"TinyHost"};
    const HMENU bar = CreateMenu();
    const HMENU menu = CreatePopupMenu();
    MSG message;
    HACCEL shortcut;
    shown = host;
    actions = plugin;
    shortcut = make_shortcut();
    AppendMenuW(bar, MF_POPUP, (UINT_PTR)menu, L"&File");
    AppendMenuW(menu, MF_STRING, COMMAND_PLUGIN, L"");
    RegisterClassW(&kind);
    window = CreateWindowExW(0, L"TinyHost", L"tiny-host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 40, 40, 700, 800,
                             NULL, bar, NULL, NULL);
    CreateWindowExA(0, "STATIC", host->text, WS_CHILD | WS_VISIBLE | SS_NOPREFIX, 0, 0, 700, 760, window,
                    NULL, NULL, NULL);
    while (window != NULL && GetMessageW(&message, NULL, 0, 0) > 0)
        if (!TranslateAcceleratorW(window, shortcut, &message))
            TranslateMessage(&message), DispatchMessageW(&message);
    window = NULL;
}

int main(void)
{
    static char bytes[8][TINY_PATH];
    char* arguments[8];
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int index = 0; index < count && index < 8; ++index) {
        arguments[index] = bytes[index];
        WideCharToMultiByte(CP_UTF8, 0, words[index], -1, bytes[index], TINY_PATH, NULL, NULL);
    }
    return tiny_main(count < 8 ? count : 8, arguments);
}
