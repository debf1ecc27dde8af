#include "ExportRun.h"
#include "plugin/boundary/BoundaryText.h"

#include <stdexcept>

using Lies = ExportFixture;
using Table = hopbox_host_table;
using Handle = hopbox_handle;

static constexpr size_t cEndless = std::numeric_limits<size_t>::max();
static constexpr char cText[] = "a";
static constexpr uint32_t cPages[] = {1001, 0};

// Functions of a table that do nothing but give an answer.
template <int32_t result, class... Parameters>
static int32_t Give(void*, Parameters...)
{
    return result;
}

template <const char* text, size_t length>
static int32_t GiveText(void*, Handle, const hopbox_sink* sink)
{
    sink->put(sink->context, text, length);
    return HOPBOX_OK;
}

template <const uint32_t* pages, size_t count>
static int32_t GivePages(void*, Handle, const hopbox_text*, const hopbox_page_sink* sink)
{
    sink->put(sink->context, pages, count);
    return HOPBOX_OK;
}

template <class... Kind>
static int32_t GiveNoHandle(void*, Kind..., Handle* object)
{
    *object = 0;
    return HOPBOX_OK;
}

static int cancelledCalls = 0;

// The function says that the user has cancelled, and does nothing.
template <class... Parameters>
static void Cancel(int32_t (*&function)(Parameters...))
{
    function = [](Parameters...) -> int32_t {
        ++cancelledCalls;
        return HOPBOX_CANCELLED;
    };
}

// One change of a table for each function.
template <class... Functions>
static auto MakeCancelling(Functions hopbox_host_table::*... functions)
{
    return std::vector<std::function<void(hopbox_host_table&)>>{
        [functions](hopbox_host_table& table) { Cancel(table.*functions); }...};
}

// A host's table in which one function is another: the export ends with an alert, or goes on without it.
TEST_F(Lies, EndInAnErrorOfTheExport)
{
    struct Case
    {
        const char* name;
        void (*change)(Table& table);
        QString alert;  // without the frame; "-" for none
    };
    const QString ended = "Unable to execute PDF Export command"_q;
    const QString badText = ended + "\nThe host gave a text that can't be read."_q;
    const QString noPages = "The pages to export are not in the document."_q;
    const QString noFonts = ended + "\nThe host does not tell a document's missing fonts."_q;
    const Case cases[] = {
        {"nothing", [](Table&) {}, cNobodyTakesIt},
        {"a text of all memory", [](Table& table) { table.get_document_file = GiveText<cText, cEndless>; },
         badText},
        {"a text without bytes", [](Table& table) { table.get_document_name = GiveText<nullptr, 3>; },
         badText},
        {"fonts without end",
         [](Table& table) {
             table.get_missing_fonts = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
                 for (int i = 0; i < 200'000; ++i)
                     sink->put(sink->context, "A", 1);
                 return HOPBOX_OK;
             };
         },
         noFonts},
        {"no font list", [](Table& table) { table.get_missing_fonts = nullptr; },
         "Can't retrieve all fonts used in the document."_q},
        {"pages of all memory", [](Table& table) { table.get_pages_of_range = GivePages<cPages, cEndless>; },
         noPages},
        {"pages without a list", [](Table& table) { table.get_pages_of_range = GivePages<nullptr, 1>; },
         noPages},
        {"a page that is none", [](Table& table) { table.get_pages_of_range = GivePages<cPages, 2>; },
         noPages},
        {"no document, and success", [](Table& table) { table.get_front_document = GiveNoHandle<>; },
         "No current document"_q},
        {"a result of its own", [](Table& table) { table.run_command = Give<77>; }, ended},
        {"a run that raises",
         [](Table& table) {
             table.run_command = [](void*, Handle) -> int32_t { throw std::runtime_error("Boom"); };
         },
         ended + "\nBoom"_q},
        {"a release that raises",
         [](Table& table) {
             table.release = [](void* host, Handle object) {
                 HostTable::GetTable().release(host, object);
                 throw std::runtime_error("Boom");
             };
         },
         cNobodyTakesIt},
        {"a command of no handle", [](Table& table) { table.create_command = GiveNoHandle<int32_t>; },
         "PDF Export command not found"_q},
        {"cancelled", [](Table& table) { table.run_command = Give<HOPBOX_CANCELLED>; }, "-"_q},
        {"no output, which comes before the document",
         [](Table& table) {
             table.set_output = nullptr;
             table.get_front_document = nullptr;
         },
         "Unable to retrieve system file data"_q},
        {"an output that is refused", [](Table& table) { table.set_output = Give<HOPBOX_UNSUPPORTED>; },
         "Unable to retrieve system file data"_q},
        {"an output that fails", [](Table& table) { table.set_output = Give<HOPBOX_FAILED>; },
         ended + "\nThe host does not do what its command needs."_q},
        {"a setting that it lacks", [](Table& table) { table.set_switch = nullptr; }, cNobodyTakesIt},
        {"a setting that fails", [](Table& table) { table.set_switch = Give<HOPBOX_FAILED>; },
         ended + "\nThe host does not take a setting of its command."_q},
        {"no preferences", [](Table& table) { table.read_job_options = nullptr; },
         "Unable to retrieve PDF Export preferences"_q},
        {"no commands", [](Table& table) { table.create_command = nullptr; },
         "PDF Export command not found"_q},
        {"a saved state that fails",
         [](Table& table) {
             table.is_document_saved = Give<HOPBOX_FAILED>;
             table.save_document = nullptr;
         },
         "Unable to save current document. Save the document and try again."_q},
        {"no saved state", [](Table& table) { table.is_document_saved = nullptr; }, cNobodyTakesIt}};
    const GString key = MakeHopbox("Press"_q, QStringList{"Trim=true"_q});
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        ExportParty party;
        Table table = HostTable::GetTable();
        row.change(table);
        party.UseBoundary(table);
        party.Export(key, [](GCPTSaveAsTool& tool) { tool.SetPageRange("1"_q); });
        const QStringList alerts = row.alert == "-"_q ? QStringList()
                                   : row.alert == cNobodyTakesIt
                                       ? QStringList{MakeAlert(row.alert)}
                                       : QStringList{MakeFramedAlert(row.alert.toUtf8().constData())};
        EXPECT_EQ(party.alerts, alerts);
        EXPECT_EQ(party.GetHandleCount(), 0U);
        EXPECT_EQ(party.host.GetUnreleased(), QStringList());
    }
}

// The user may cancel whatever takes a while, also what the export could do without: nothing is sent then,
// and no alert is shown. A document that stays open is no reason.
TEST_F(Lies, OfTheUsersCancellingEndTheExportInSilence)
{
    const auto changes = MakeCancelling(
        &Table::get_front_document, &Table::find_open_document, &Table::open_document,
        &Table::is_document_saved, &Table::save_document, &Table::get_document_file,
        &Table::get_document_name, &Table::get_page_count, &Table::get_page, &Table::get_pages_of_range,
        &Table::get_missing_fonts, &Table::get_active_book, &Table::get_book_file, &Table::get_book_name,
        &Table::is_book_modified, &Table::save_book, &Table::get_book_document_count,
        &Table::get_book_document_file, &Table::create_command, &Table::read_job_options, &Table::set_switch,
        &Table::set_length, &Table::get_spreads, &Table::set_spreads, &Table::set_output, &Table::set_pages,
        &Table::set_name, &Table::set_document, &Table::set_book, &Table::set_package_setting,
        &Table::run_command, &Table::write_report);
    const GString key = MakeHopbox("Press"_q, {"Trim=true"_q, "IncludeFilePackage=true"_q});
    int reached = 0;
    for (const auto kind : {ExportKind::Document, ExportKind::Book}) {
        for (size_t at = 0; at < changes.size(); ++at) {
            SCOPED_TRACE(at);
            ExportParty party(kind);
            party.host.documents.front().isSaved = false;
            party.host.books.front().isModified = true;
            Table table = HostTable::GetTable();
            changes[at](table);
            cancelledCalls = 0;
            party.UseBoundary(table);
            party.Export(key);
            EXPECT_EQ(party.alerts,
                      cancelledCalls > 0 ? QStringList() : QStringList{MakeAlert(cNobodyTakesIt)});
            EXPECT_EQ(party.GetHandleCount(), 0U);
            reached += kind == ExportKind::Book && cancelledCalls > 0;
        }
    }
    EXPECT_GT(reached, 15);
    cancelledCalls = 0;
    ExportParty party(ExportKind::Book);
    Table table = HostTable::GetTable();
    Cancel(table.close_document);
    party.UseBoundary(table);
    party.Export(key);
    EXPECT_GT(cancelledCalls, 0);
    EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
}

// A size that ends within a pointer must not lead to a call of a part of it.
TEST(Boundary, TakesOfATableTheWholeFunctionsThatItsSizeReaches)
{
    for (size_t more = 0; more <= sizeof(void*); ++more) {
        Table table = HostTable::GetTable();
        table.size = static_cast<uint32_t>(offsetof(Table, run_command) + more);
        Table copy;
        ASSERT_TRUE(Boundary::Copy(&table, copy));
        EXPECT_EQ(copy.set_package_setting, table.set_package_setting) << more;
        EXPECT_EQ(copy.run_command, more < sizeof(void*) ? nullptr : table.run_command) << more;
        EXPECT_EQ(copy.write_report, nullptr) << more;
    }
}

TEST_F(Lies, AnOpeningThatGivesNoDocumentIsNoFailureOfTheOpening)
{
    static int32_t answer = HOPBOX_OK;
    Table table = {};
    table.open_document = [](void*, const hopbox_text*, Handle*) -> int32_t { return answer; };
    TableHost host(table, nullptr);
    for (answer = HOPBOX_OK; answer <= HOPBOX_WRONG_THREAD; ++answer) {
        HostPtr<IDocument> document;
        const ErrorCode result = host.QueryDocumentUtils()->OpenDocument(IDFile(PMString("/a"_q)), document);
        EXPECT_EQ(result == cSuccess, answer == HOPBOX_OK || answer == HOPBOX_NONE) << answer;
        EXPECT_FALSE(document);
    }
}

// A host may begin what it can't end.
TEST_F(Lies, AModalStateWithoutAnEndIsLeftAsItIs)
{
    Table table = {};
    table.begin_modal = [](void*, uint64_t* token) -> int32_t {
        *token = 7;
        return HOPBOX_OK;
    };
    TableHost host(table, nullptr);
    const auto modal = host.QueryModalUtils();
    EXPECT_EQ(modal->AcquireModalToken(), 7U);
    modal->HandBackModalToken(7);
}

TEST_F(Lies, HandlesThatAreNoneAreFailures)
{
    ExportParty party;
    HostTable host(party.host);
    const Table& table = HostTable::GetTable();
    Handle document = 0;
    Handle command = 0;
    ASSERT_EQ(table.get_front_document(&host, &document), HOPBOX_OK);
    ASSERT_EQ(table.create_command(&host, HOPBOX_PACKAGE_DOCUMENT, &command), HOPBOX_OK);
    const Boundary::PassedText path("/a"_q);
    const Boundary::PassedText range("1"_q);
    const uint32_t page = 1;
    Handle pdf = 0;
    ASSERT_EQ(table.create_command(&host, HOPBOX_EXPORT_DOCUMENT, &pdf), HOPBOX_OK);
    int32_t number = 0;
    EXPECT_EQ(table.get_page_count(&host, 4711, &number), HOPBOX_FAILED);
    EXPECT_EQ(table.get_page_count(&host, command, &number), HOPBOX_FAILED);
    EXPECT_EQ(table.run_command(&host, document), HOPBOX_FAILED);
    EXPECT_EQ(table.set_book(&host, command, document), HOPBOX_FAILED);
    EXPECT_EQ(table.set_output(&host, document, path), HOPBOX_FAILED);
    EXPECT_EQ(table.set_output(&host, command, nullptr), HOPBOX_FAILED);
    EXPECT_EQ(table.set_pages(&host, pdf, document, nullptr, 1, 0), HOPBOX_FAILED);
    EXPECT_EQ(table.set_pages(&host, pdf, document, &page, cEndless, 0), HOPBOX_FAILED);
    EXPECT_EQ(table.get_pages_of_range(&host, document, range, nullptr), HOPBOX_FAILED);
    EXPECT_EQ(table.set_package_setting(&host, command, cPackageSettingCount, 1), HOPBOX_UNSUPPORTED);
    EXPECT_EQ(table.create_command(&host, 99, &document), HOPBOX_UNSUPPORTED);
    // Nor is a place for an answer that is none written to.
    EXPECT_EQ(table.get_page_count(&host, document, nullptr), HOPBOX_FAILED);
    party.host.Make(HostOperation::QueryModalUtils, HostAnswer::Absent);
    uint64_t token = 4711;
    EXPECT_EQ(table.begin_modal(&host, &token), HOPBOX_NONE);
    EXPECT_EQ(token, 4711U);
    EXPECT_EQ(table.get_front_document(&host, nullptr), HOPBOX_FAILED);
    EXPECT_EQ(table.create_command(&host, HOPBOX_PACKAGE_DOCUMENT, nullptr), HOPBOX_FAILED);
    uint32_t none = 77;
    EXPECT_EQ(table.get_page(&host, document, 99, &none), HOPBOX_NONE);
    EXPECT_EQ(none, 77U) << "answered with a refusal";
    table.release(&host, document);
    table.release(&host, document);
    EXPECT_EQ(table.get_page_count(&host, document, &number), HOPBOX_FAILED);
    EXPECT_EQ(host.GetHandleCount(), 2U);
    table.release(&host, pdf);
    table.release(&host, command);
    EXPECT_EQ(party.host.GetUnreleased(), QStringList());
}
