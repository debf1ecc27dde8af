#include "plugin/boundary/HostTable.h"
#include "plugin/boundary/hopbox_adaptor.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"
#include "tests/support/fake_host/FakeHost.h"

#include <qglobal.h>

// The fake host as a library for hopbox-host-check. What FAKE_ADAPTOR_LIE names is wrong with its table.

namespace
{
using Table = hopbox_host_table;
using Handle = hopbox_handle;

struct State
{
    FakeHost services;
    HostTable host{services};
    Table table = HostTable::GetTable();
};

State& GetState()
{
    static auto* const state = new State;
    return *state;
}

int32_t OpenSample(void*, const hopbox_text* folder)
{
    const QString place = QString::fromUtf8(folder->bytes, static_cast<int>(folder->length));
    FakeDocument document;
    document.name = "Sample.indd"_q;
    document.path = place + "/Sample.indd"_q;
    document.pageCount = 2;
    FakeBook book;
    book.path = place + "/Sample.indb"_q;
    book.name = "Sample.indb"_q;
    book.documentPaths = QStringList{document.path};
    GetState().services.documents = {document};
    GetState().services.books = {book};
    return WriteFile(document.path, "document") && WriteFile(book.path, "book") ? HOPBOX_OK : HOPBOX_FAILED;
}

bool leavesOpen = false;

int32_t CloseAll(void*)
{
    if (leavesOpen)
        return HOPBOX_OK;
    GetState().services.documents.clear();
    GetState().services.books.clear();
    return HOPBOX_OK;
}

const std::map<QByteArray, void (*)(Table&)> cLies = {
    {"version", [](Table& table) { table.version = HOPBOX_VERSION + 1; }},
    {"needed", [](Table& table) { table.set_pages = nullptr; }},
    {"no file",
     [](Table& table) {
         table.get_document_file = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
             sink->put(sink->context, "Sample", 6);
             return HOPBOX_OK;
         };
     }},
    {"no UTF-8",
     [](Table& table) {
         table.get_document_name = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
             sink->put(sink->context, "\xFF", 1);
             return HOPBOX_OK;
         };
     }},
    {"any page",
     [](Table& table) {
         table.get_page = [](void*, Handle, int32_t index, uint32_t* page) -> int32_t {
             *page = 1001 + static_cast<uint32_t>(index);
             return HOPBOX_OK;
         };
     }},
    {"any range",
     [](Table& table) {
         table.get_pages_of_range = [](void*, Handle, const hopbox_text*,
                                       const hopbox_page_sink* sink) -> int32_t {
             const uint32_t page = 1001;
             sink->put(sink->context, &page, 1);
             return HOPBOX_OK;
         };
     }},
    {"any command",
     [](Table& table) {
         table.create_command = [](void* host, int32_t kind, Handle* command) -> int32_t {
             return HostTable::GetTable().create_command(
                 host, kind == 99 ? int32_t(HOPBOX_EXPORT_DOCUMENT) : kind, command);
         };
     }},
    {"any job options",
     [](Table& table) {
         table.read_job_options = [](void*, Handle, const hopbox_text*) -> int32_t { return HOPBOX_OK; };
     }},
    {"any setting",
     [](Table& table) {
         table.set_switch = [](void*, Handle, int32_t, int32_t) -> int32_t { return HOPBOX_OK; };
     }},
    {"no PDF", [](Table& table) { table.run_command = [](void*, Handle) -> int32_t { return HOPBOX_OK; }; }},
    {"no report",
     [](Table& table) { table.write_report = [](void*, Handle) -> int32_t { return HOPBOX_OK; }; }},
    {"no token",
     [](Table& table) {
         table.begin_modal = [](void*, uint64_t* token) -> int32_t {
             *token = 0;
             return HOPBOX_OK;
         };
     }},
    {"no unit",
     [](Table& table) {
         table.get_unit = [](void*, int32_t* unit) -> int32_t {
             *unit = 9;
             return HOPBOX_OK;
         };
     }},
    {"books without documents",
     [](Table& table) {
         table.get_book_document_file = [](void*, Handle, int32_t, const hopbox_sink*) -> int32_t {
             return HOPBOX_NONE;
         };
     }},
    {"no export",  // of the name that the plug-in gives it
     [](Table& table) {
         table.set_output = [](void* host, Handle command, const hopbox_text* path) -> int32_t {
             const QByteArray text(path->bytes, static_cast<int>(path->length));
             const bool isExport = text.endsWith("Sample.pdf") && !text.contains("none");
             return isExport ? int32_t(HOPBOX_FAILED) : HostTable::GetTable().set_output(host, command, path);
         };
     }},
    {"documents left open", [](Table&) { leavesOpen = true; }}};
}  // namespace

extern "C" Q_DECL_EXPORT const hopbox_adaptor* hopbox_adaptor_entry(uint32_t)
{
    static const hopbox_adaptor adaptor = {sizeof adaptor,   HOPBOX_VERSION, &GetState().table,
                                           &GetState().host, OpenSample,     CloseAll};
    const auto lie = cLies.find(qgetenv("FAKE_ADAPTOR_LIE"));
    if (lie != cLies.end())
        lie->second(GetState().table);
    return &adaptor;
}
