#include "FakeAdaptor.h"

#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

#include <QFileInfo>

#include <cstring>
#include <thread>
#include <tuple>

using namespace FakeAdaptor;

namespace
{
// A run of a command of one kind that does nothing and gives the result.
template <int32_t kind, int32_t lie>
int32_t RunNothing(void* host, Handle command)
{
    return GetKinds()[command] == kind ? lie : RunCommand(host, command);
}

// An operation that fails, or says that it has done what it has not.
template <int32_t result, class... Parameters>
int32_t Give(void*, Parameters...)
{
    return result;
}

constexpr char cSample[] = "Sample";
constexpr char cNoUtf8[] = "\xFF";

template <const char* text>
int32_t GiveText(void*, Handle, const hopbox_sink* sink)
{
    sink->put(sink->context, text, std::strlen(text));
    return HOPBOX_OK;
}

// The number as the answer, for which the last parameter is the place.
template <auto number, class... Parameters>
int32_t GiveNumber(void*, Parameters... parameters)
{
    *std::get<sizeof...(Parameters) - 1>(std::tie(parameters...)) = number;
    return HOPBOX_OK;
}

const std::map<QByteArray, void (*)(Table&)> cLies = {
    {"version", [](Table& table) { table.version = HOPBOX_VERSION + 1; }},
    {"needed", [](Table& table) { table.set_pages = nullptr; }},
    {"no file", [](Table& table) { table.get_document_file = GiveText<cSample>; }},
    {"no UTF-8", [](Table& table) { table.get_document_name = GiveText<cNoUtf8>; }},
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
    {"a range that is cut",
     [](Table& table) {
         table.get_pages_of_range = [](void* host, Handle document, const hopbox_text* range,
                                       const hopbox_page_sink* sink) -> int32_t {
             const Boundary::PassedText cut(Read(*range).replace(QLatin1Char('3'), QLatin1Char('2')));
             return HostTable::GetTable().get_pages_of_range(host, document, cut, sink);
         };
     }},
    {"any file that opens",
     [](Table& table) {
         table.open_document = [](void* host, const hopbox_text* path, Handle* document) -> int32_t {
             const int32_t result = HostTable::GetTable().open_document(host, path, document);
             return result != HOPBOX_OK && QFileInfo::exists(Read(*path)) ? GetFrontDocument(host, document)
                                                                          : result;
         };
     }},
    {"job options that break off",
     [](Table& table) {
         table.read_job_options = [](void* host, Handle command, const hopbox_text* path) -> int32_t {
             return HostTable::GetTable().read_job_options(host, command, path);
         };
     }},
    {"a rest of a cancelled export",
     [](Table&) { GetState().restName = "/../rest"_q; }},
    {"any command",
     [](Table& table) {
         table.create_command = [](void* host, int32_t kind, Handle* command) -> int32_t {
             return HostTable::GetTable().create_command(
                 host, kind == 99 ? int32_t(HOPBOX_EXPORT_DOCUMENT) : kind, command);
         };
     }},
    {"any job options", [](Table& table) { table.read_job_options = Give<HOPBOX_OK>; }},
    {"pages of one handle",
     [](Table& table) {
         table.get_page = [](void* host, Handle document, int32_t index, uint32_t* page) -> int32_t {
             static const Handle first = document;
             return document == first ? HostTable::GetTable().get_page(host, document, index, page)
                                      : int32_t(HOPBOX_FAILED);
         };
     }},
    {"a document of no handle",
     [](Table& table) {
         table.get_page_count = [](void* host, Handle document, int32_t* count) -> int32_t {
             return document == 0 ? int32_t(HOPBOX_OK)
                                  : HostTable::GetTable().get_page_count(host, document, count);
         };
     }},
    {"a command of no handle",
     [](Table& table) {
         table.run_command = [](void* host, Handle command) -> int32_t {
             return command == 0 ? int32_t(HOPBOX_OK) : RunCommand(host, command);
         };
     }},
    {"a file that is not there yet", [](Table&) { GetState().namesFileEarly = true; }},
    {"documents that don't close", [](Table&) { GetState().closing = HOPBOX_FAILED; }},
    {"a rest without an end", [](Table& table) { table.end_modal = [](void*, uint64_t) {}; }},
    {"no rest", [](Table& table) { table.begin_modal = GiveNumber<1>; }},
    {"no setting", [](Table& table) { table.set_switch = Give<HOPBOX_FAILED>; }},
    {"no length", [](Table& table) { table.set_length = Give<HOPBOX_FAILED>; }},
    {"no package setting", [](Table& table) { table.set_package_setting = Give<HOPBOX_FAILED>; }},
    {"any setting", [](Table& table) { table.set_switch = Give<HOPBOX_OK>; }},
    {"any length", [](Table& table) { table.set_length = Give<HOPBOX_OK>; }},
    {"any package setting", [](Table& table) { table.set_package_setting = Give<HOPBOX_OK>; }},
    {"no PDF", [](Table& table) { table.run_command = Give<HOPBOX_OK>; }},
    {"no PDF of a book", [](Table& table) { table.run_command = RunNothing<HOPBOX_EXPORT_BOOK, HOPBOX_OK>; }},
    {"no package of a book",
     [](Table& table) { table.run_command = RunNothing<HOPBOX_PACKAGE_BOOK, HOPBOX_OK>; }},
    {"no preferences of a book",
     [](Table& table) { table.run_command = RunNothing<HOPBOX_PDF_PREFERENCES, HOPBOX_FAILED>; }},
    {"no Cancel of a book",
     [](Table& table) {
         table.run_command = [](void* host, Handle command) -> int32_t {
             const int32_t result = RunCommand(host, command);
             return result == HOPBOX_CANCELLED && GetKinds()[command] == HOPBOX_EXPORT_BOOK
                        ? int32_t(HOPBOX_OK)
                        : result;
         };
     }},
    {"a rest beside what was made",
     [](Table& table) {
         table.run_command = [](void* host, Handle command) -> int32_t {
             GetState().services.onMade = [](const QString& path) {
                 WriteFile(QFileInfo(path).path() + "/rest"_q, "rest");
             };
             return RunCommand(host, command);
         };
     }},
    {"a document that is written to",
     [](Table& table) {
         table.run_command = [](void* host, Handle command) -> int32_t {
             const QString path = GetState().services.documents.front().path;
             WriteFile(path, ReadFile(path) + "more");
             return RunCommand(host, command);
         };
     }},
    {"no report", [](Table& table) { table.write_report = Give<HOPBOX_OK>; }},
    {"no document for a package", [](Table& table) { table.set_document = Give<HOPBOX_FAILED>; }},
    {"no book for a command", [](Table& table) { table.set_book = Give<HOPBOX_FAILED>; }},
    {"no output", [](Table& table) { table.set_output = Give<HOPBOX_FAILED>; }},
    {"no pages", [](Table& table) { table.set_pages = Give<HOPBOX_FAILED>; }},
    {"no name", [](Table& table) { table.set_name = Give<HOPBOX_FAILED>; }},
    {"no spreads", [](Table& table) { table.set_spreads = Give<HOPBOX_FAILED>; }},
    {"spreads that are forgotten", [](Table& table) { table.set_spreads = Give<HOPBOX_OK>; }},
    {"no action", [](Table& table) { table.add_action = Give<HOPBOX_FAILED>; }},
    {"an action that is forgotten", [](Table& table) { table.add_action = Give<HOPBOX_OK>; }},
    {"no menu", [](Table& table) { table.add_menu_item = Give<HOPBOX_FAILED>; }},
    {"no packages of books",
     [](Table& table) {
         table.create_command = [](void* host, int32_t kind, Handle* command) -> int32_t {
             return kind == HOPBOX_PACKAGE_BOOK ? int32_t(HOPBOX_UNSUPPORTED)
                                                : CreateCommand(host, kind, command);
         };
     }},
    {"actions of an earlier session",
     [](Table& table) {
         table.is_action_known = [](void*, int32_t action, int32_t* isKnown) -> int32_t {
             *isKnown = action == HOPBOX_ACTION_DOCUMENT || action == HOPBOX_ACTION_BOOK;
             return HOPBOX_OK;
         };
         table.add_action = Give<HOPBOX_FAILED>;
     }},
    {"any action", [](Table& table) { table.is_action_known = GiveNumber<1>; }},
    {"one button", [](Table& table) { table.show_alert = GiveNumber<1>; }},
    {"fonts that are no UTF-8", [](Table& table) { table.get_missing_fonts = GiveText<cNoUtf8>; }},
    {"no page", [](Table& table) { table.get_page_count = GiveNumber<0>; }},
    {"a document of nothing", [](Table& table) { table.get_front_document = GiveNumber<4711>; }},
    {"any document that is open",
     [](Table& table) {
         table.find_open_document = [](void* host, const hopbox_text*, Handle* document) -> int32_t {
             return GetFrontDocument(host, document);
         };
     }},
    {"any document that opens",
     [](Table& table) {
         table.open_document = [](void* host, const hopbox_text* path, Handle* document) -> int32_t {
             return QFileInfo::exists(Read(*path)) ? HostTable::GetTable().open_document(host, path, document)
                                                   : GetFrontDocument(host, document);
         };
     }},
    {"a document that is unsaved for ever", [](Table& table) { table.save_document = Give<HOPBOX_FAILED>; }},
    {"a book without a file", [](Table& table) { table.get_book_file = GiveText<cSample>; }},
    {"a book's name that is no UTF-8", [](Table& table) { table.get_book_name = GiveText<cNoUtf8>; }},
    {"any document of a book",
     [](Table& table) {
         table.get_book_document_file = [](void* host, Handle book, int32_t,
                                           const hopbox_sink* sink) -> int32_t {
             return HostTable::GetTable().get_book_document_file(host, book, 0, sink);
         };
     }},
    {"an empty book", [](Table& table) { table.get_book_document_count = GiveNumber<0>; }},
    {"a book that is not saved", [](Table& table) { table.save_book = Give<HOPBOX_FAILED>; }},
    {"books left open", [](Table&) { GetState().leavesBooksOpen = true; }},
    {"no token", [](Table& table) { table.begin_modal = GiveNumber<0>; }},
    {"no unit", [](Table& table) { table.get_unit = GiveNumber<9>; }},
    {"books without documents",
     [](Table& table) { table.get_book_document_file = Give<HOPBOX_NONE>; }},
    {"no export",  // of the name that the plug-in gives it, after that of the document in front
     [](Table& table) {
         table.set_output = [](void* host, Handle command, const hopbox_text* path) -> int32_t {
             return Read(*path).endsWith("Unsaved 2.pdf"_q)
                        ? int32_t(HOPBOX_FAILED)
                        : HostTable::GetTable().set_output(host, command, path);
         };
     }},
    {"documents left open", [](Table&) { GetState().leavesOpen = true; }},
    {"a text of another thread",
     [](Table& table) {
         table.get_document_name = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
             std::thread([&] { sink->put(sink->context, "Sample", 6); }).join();
             return HOPBOX_OK;
         };
     }},
    {"pages of another thread",
     [](Table& table) {
         table.get_pages_of_range = [](void* host, Handle document, const hopbox_text* range,
                                       const hopbox_page_sink* sink) -> int32_t {
             int32_t result = 0;
             std::thread([&] {
                 result = HostTable::GetTable().get_pages_of_range(host, document, range, sink);
             }).join();
             return result;
         };
     }},
    {"handles that are kept", [](Table& table) { table.release = [](void*, Handle) {}; }},
    {"handles that are not counted",
     [](Table& table) {
         static Handle last = 0;
         table.get_front_document = [](void* host, Handle* document) -> int32_t {
             const int32_t result = last != 0 ? int32_t(HOPBOX_OK) : GetFrontDocument(host, &last);
             *document = result == HOPBOX_OK ? last : *document;
             return result;
         };
         table.release = [](void* host, Handle handle) {
             last = last == handle ? 0 : last;
             HostTable::GetTable().release(host, handle);
         };
     }},
    {"a handle of nothing",
     [](Table& table) {
         table.find_open_document = [](void* host, const hopbox_text* path, Handle* document) -> int32_t {
             const int32_t result = HostTable::GetTable().find_open_document(host, path, document);
             *document = result == HOPBOX_OK ? *document : 4711;
             return result;
         };
     }},
    {"no handle",
     [](Table& table) {
         table.open_document = [](void*, const hopbox_text* path, Handle*) -> int32_t {
             return QFileInfo::exists(Read(*path)) ? HOPBOX_OK : HOPBOX_FAILED;
         };
     }},
    {"documents that stay open", [](Table& table) { table.close_document = Give<HOPBOX_OK>; }},
    {"no Cancel",
     [](Table& table) {
         table.run_command = [](void* host, Handle command) -> int32_t {
             const int32_t result = RunCommand(host, command);
             return result == HOPBOX_CANCELLED ? int32_t(HOPBOX_OK) : result;
         };
     }},
    {"a rest of what was cancelled", [](Table&) { GetState().leavesRest = true; }},
    {"any folder",
     [](Table& table) {
         table.set_output = [](void* host, Handle command, const hopbox_text* path) -> int32_t {
             const Boundary::PassedText elsewhere(Read(*path).remove("Check.joboptions/"_q));
             return HostTable::GetTable().set_output(host, command, elsewhere);
         };
     }},
    {"any report",
     [](Table& table) {
         table.write_report = [](void* host, Handle command) -> int32_t {
             HostTable::GetTable().write_report(host, command);
             return HOPBOX_OK;
         };
     }},
    {"any save", [](Table& table) { table.save_document = Give<HOPBOX_OK>; }},
    {"always saved", [](Table& table) { table.is_document_saved = GiveNumber<1>; }},
    {"a book that stays modified", [](Table& table) { table.is_book_modified = GiveNumber<1>; }}};
}  // namespace

void FakeAdaptor::Lie(const QByteArray& name)
{
    const auto lie = cLies.find(name);
    if (lie != cLies.end())
        lie->second(GetState().table);
}
