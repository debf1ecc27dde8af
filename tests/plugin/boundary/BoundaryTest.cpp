#include "ExportRun.h"
#include "SmallHost.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/ModulePlugIn.h"
#include "plugin/host/CActionComponent.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/WindowDriver.h"

#include <QApplication>
#include <QLibrary>
#include <QTranslator>

#include <cstring>
#include <limits>
#include <stdexcept>
#include <thread>
#include <tuple>

namespace
{
class Lies : public ExportFixture
{
};

constexpr size_t cEndless = std::numeric_limits<size_t>::max();
using Table = hopbox_host_table;
using Handle = hopbox_handle;
}  // namespace

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
        {"a text of all memory",
         [](Table& table) {
             table.get_document_file = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
                 sink->put(sink->context, "a", cEndless);
                 return HOPBOX_OK;
             };
         },
         badText},
        {"a text without bytes",
         [](Table& table) {
             table.get_document_name = [](void*, Handle, const hopbox_sink* sink) -> int32_t {
                 sink->put(sink->context, nullptr, 3);
                 return HOPBOX_OK;
             };
         },
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
        {"pages of all memory",
         [](Table& table) {
             table.get_pages_of_range = [](void*, Handle, const hopbox_text*,
                                           const hopbox_page_sink* sink) -> int32_t {
                 const uint32_t page = 1;
                 sink->put(sink->context, &page, cEndless);
                 return HOPBOX_OK;
             };
         },
         noPages},
        {"pages without a list",
         [](Table& table) {
             table.get_pages_of_range = [](void*, Handle, const hopbox_text*,
                                           const hopbox_page_sink* sink) -> int32_t {
                 sink->put(sink->context, nullptr, 1);
                 return HOPBOX_OK;
             };
         },
         noPages},
        {"a page that is none",
         [](Table& table) {
             table.get_pages_of_range = [](void*, Handle, const hopbox_text*,
                                           const hopbox_page_sink* sink) -> int32_t {
                 const uint32_t pages[] = {1001, 0};
                 sink->put(sink->context, pages, 2);
                 return HOPBOX_OK;
             };
         },
         noPages},
        {"no document, and success",
         [](Table& table) {
             table.get_front_document = [](void*, Handle* document) -> int32_t {
                 *document = 0;
                 return HOPBOX_OK;
             };
         },
         "No current document"_q},
        {"a result of its own",
         [](Table& table) { table.run_command = [](void*, Handle) -> int32_t { return 77; }; }, ended},
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
        {"a command of no handle",
         [](Table& table) {
             table.create_command = [](void*, int32_t, Handle* command) -> int32_t {
                 *command = 0;
                 return HOPBOX_OK;
             };
         },
         "PDF Export command not found"_q},
        {"cancelled",
         [](Table& table) { table.run_command = [](void*, Handle) -> int32_t { return HOPBOX_CANCELLED; }; },
         "-"_q},
        {"no output, which comes before the document",
         [](Table& table) {
             table.set_output = nullptr;
             table.get_front_document = nullptr;
         },
         "Unable to retrieve system file data"_q},
        {"an output that is refused",
         [](Table& table) {
             table.set_output = [](void*, Handle, const hopbox_text*) -> int32_t {
                 return HOPBOX_UNSUPPORTED;
             };
         },
         "Unable to retrieve system file data"_q},
        {"an output that fails",
         [](Table& table) {
             table.set_output = [](void*, Handle, const hopbox_text*) -> int32_t { return HOPBOX_FAILED; };
         },
         ended + "\nThe host does not do what its command needs."_q},
        {"a setting that it lacks", [](Table& table) { table.set_switch = nullptr; }, cNobodyTakesIt},
        {"a setting that fails",
         [](Table& table) {
             table.set_switch = [](void*, Handle, int32_t, int32_t) -> int32_t { return HOPBOX_FAILED; };
         },
         ended + "\nThe host does not take a setting of its command."_q},
        {"no preferences", [](Table& table) { table.read_job_options = nullptr; },
         "Unable to retrieve PDF Export preferences"_q},
        {"no commands", [](Table& table) { table.create_command = nullptr; },
         "PDF Export command not found"_q},
        {"a saved state that fails",
         [](Table& table) {
             table.is_document_saved = [](void*, Handle, int32_t*) -> int32_t { return HOPBOX_FAILED; };
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
    EXPECT_EQ(table.get_front_document(&host, nullptr), HOPBOX_FAILED);
    EXPECT_EQ(table.create_command(&host, HOPBOX_PACKAGE_DOCUMENT, nullptr), HOPBOX_FAILED);
    table.release(&host, document);
    table.release(&host, document);
    EXPECT_EQ(table.get_page_count(&host, document, &number), HOPBOX_FAILED);
    EXPECT_EQ(host.GetHandleCount(), 2U);
    table.release(&host, pdf);
    table.release(&host, command);
    EXPECT_EQ(party.host.GetUnreleased(), QStringList());
}

namespace
{
// The module as small hosts load it, and a later one beside it.
class SmallHosts : public testing::Test
{
protected:
    SmallHosts() : library(QStringLiteral(HOPBOX_MODULE)), laterLibrary(QStringLiteral(LATER_MODULE)) {}

    hopbox_entry_function FindEntry() { return FindEntry(library); }
    static hopbox_entry_function FindEntry(QLibrary& module)
    {
        const auto entry = reinterpret_cast<hopbox_entry_function>(module.resolve(HOPBOX_ENTRY_NAME));
        EXPECT_NE(entry, nullptr) << module.errorString().toStdString();
        return entry;
    }

    void Begin(const SmallHost& host, QLibrary& module) const
    {
        char error[200] = "";
        const QByteArray prefix = sandbox.GetPath(QString::fromLatin1(host.name)).toUtf8();
        EXPECT_EQ(host.begin(FindEntry(module), prefix.constData(), error), 0) << error;
    }

    // The entry is chosen, and Enter pressed in the dialog; the PDF is with the receiver then.
    static void Export(const SmallHost& host, PrinterProcessor& receiver)
    {
        const WindowDriver driver({[](QWidget&) { WindowDriver::Click(Qt::Key_Return); }});
        EXPECT_EQ(host.choose(), 0);
        const QString saved = receiver.ReadLine().value("saved"_q).toString();
        EXPECT_TRUE(ReadFile(saved).startsWith("%PDF-1.4"));
        EXPECT_TRUE(saved.contains(QString::fromLatin1(host.name))) << saved.toStdString();
        EXPECT_EQ(host.count_handles(), 0);
    }

    Sandbox sandbox;
    QLibrary library;
    QLibrary laterLibrary;
};
}  // namespace

// Hosts in C that were compiled against the header as it was before its last functions, as it is, and as it
// may be once it has more; each with the module of this form of the header and with a later one. In each
// round two of them live at once, the one with the one module, the other with the other.
TEST_F(SmallHosts, OfEachFormOfTheHeaderExportThroughModulesOfTwoFormsAtOnce)
{
    MakeHopbox("Press"_q);
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    const QApplication application(count, arguments);  // for the driver
    const struct
    {
        const SmallHost& ofModule;
        const SmallHost& ofLaterModule;
        bool isModuleFirstGone;
    } rounds[] = {{earlier_host, present_host, true},
                  {later_host, earlier_host, false},
                  {present_host, later_host, true}};
    for (const auto& round : rounds) {
        SCOPED_TRACE(std::string(round.ofModule.name) + " and " + round.ofLaterModule.name);
        PrinterProcessor receiver(sandbox, {"--inbox"_q, sandbox.GetPath("Inbox"_q)});
        const int entries = round.ofModule.count_entries();
        Begin(round.ofModule, library);
        EXPECT_EQ(round.ofModule.count_entries(), entries + 2);
        Begin(round.ofLaterModule, laterLibrary);
        Export(round.ofModule, receiver);
        Export(round.ofLaterModule, receiver);
        const auto& [first, second] = round.isModuleFirstGone ? std::tie(round.ofModule, round.ofLaterModule)
                                                              : std::tie(round.ofLaterModule, round.ofModule);
        EXPECT_EQ(first.end(), 0);
        Export(second, receiver);
        EXPECT_EQ(second.end(), 0);
    }
}

// A later module asks a host of today for what the host does not have, and a host of today does not see what
// the later module has.
TEST_F(SmallHosts, DoWithoutWhatOnlyTheOtherSideHas)
{
    const hopbox_plugin_table* plugIn = FindEntry(laterLibrary)(HOPBOX_VERSION);
    ASSERT_GT(plugIn->size, sizeof *plugIn);
    struct
    {
        Table table;
        int32_t (*beyond)(void* host);
    } memory = {HostTable::GetTable(), [](void*) -> int32_t { return HOPBOX_OK; }};
    FakeHost services;
    HostTable host(services);
    int32_t (*oneMore)(void*) = nullptr;
    std::memcpy(&oneMore, reinterpret_cast<const char*>(plugIn) + sizeof *plugIn, sizeof oneMore);
    for (const bool isLater : {false, true}) {
        memory.table.size = sizeof memory.table + (isLater ? sizeof memory.beyond : 0);
        ASSERT_EQ(plugIn->load(&memory.table, &host, nullptr), HOPBOX_OK);
        EXPECT_EQ(oneMore(nullptr), isLater ? HOPBOX_OK : HOPBOX_UNSUPPORTED);
        EXPECT_EQ(plugIn->unload(), HOPBOX_OK);
    }
}

TEST_F(SmallHosts, WithATableThatIsNoneAreRefused)
{
    const hopbox_plugin_table* plugIn = FindEntry()(HOPBOX_VERSION);
    ASSERT_NE(plugIn, nullptr);
    EXPECT_EQ(FindEntry()(HOPBOX_VERSION + 1), nullptr);
    Table other = {};
    other.size = sizeof other;
    other.version = HOPBOX_VERSION + 1;
    Table small = {};
    small.size = 4;
    small.version = HOPBOX_VERSION;
    for (const Table* table : {static_cast<const Table*>(nullptr), static_cast<const Table*>(&other),
                               static_cast<const Table*>(&small)}) {
        const Boundary::TextSink reason;
        EXPECT_EQ(plugIn->load(table, nullptr, reason), HOPBOX_FAILED);
        EXPECT_EQ(reason.GetTexts().size(), 1);
        EXPECT_EQ(plugIn->load(table, nullptr, nullptr), HOPBOX_FAILED);
        const hopbox_sink withoutFunction = {nullptr, nullptr};
        EXPECT_EQ(plugIn->load(table, nullptr, &withoutFunction), HOPBOX_FAILED);
    }
    EXPECT_EQ(plugIn->do_action(HOPBOX_ACTION_DOCUMENT), HOPBOX_NONE);
    const Boundary::PassedText hopbox("Press"_q);
    EXPECT_EQ(plugIn->export_to(HOPBOX_ACTION_DOCUMENT, hopbox, nullptr, HOPBOX_AS_SET, nullptr),
              HOPBOX_NONE);
    EXPECT_EQ(plugIn->unload(), HOPBOX_OK);
}

TEST_F(SmallHosts, AreAnsweredOnTheThreadThatLoadedAlone)
{
    const hopbox_plugin_table* plugIn = FindEntry()(HOPBOX_VERSION);
    const auto askElsewhere = [](const auto& question) {
        int32_t answer = HOPBOX_OK;
        std::thread([&] { answer = question(); }).join();
        return answer;
    };
    FakeHost services;
    HostTable host(services);
    ASSERT_EQ(plugIn->load(&HostTable::GetTable(), &host, nullptr), HOPBOX_OK);
    EXPECT_EQ(askElsewhere([&] { return plugIn->startup(); }), HOPBOX_WRONG_THREAD);
    EXPECT_EQ(askElsewhere([&] { return plugIn->unload(); }), HOPBOX_WRONG_THREAD);
    EXPECT_TRUE(services.GetAsked().empty());
    EXPECT_EQ(plugIn->unload(), HOPBOX_OK);
    // Nor does the plug-in ask from elsewhere.
    TableHost tableHost(HostTable::GetTable(), &host);
    int32_t unit = 0;
    EXPECT_EQ(askElsewhere([&] { return tableHost.Call(&Table::get_unit, &unit); }), HOPBOX_WRONG_THREAD);
    EXPECT_TRUE(services.GetAsked().empty());
}

// What a host's own code does that runs inside its functions: the plug-in still has to come back from them.
TEST_F(SmallHosts, AreKeptWhileThePlugInAsksThem)
{
    const hopbox_plugin_table* plugIn = FindEntry()(HOPBOX_VERSION);
    FakeHost services;
    services.documents.push_back({});
    services.books.push_back({});
    HostTable host(services);
    int asked = 0;
    services.onAsk = [&](HostOperation) {
        ++asked;
        EXPECT_EQ(plugIn->close_actions(), HOPBOX_BUSY);
        EXPECT_EQ(plugIn->unload(), HOPBOX_BUSY);
    };
    ASSERT_EQ(plugIn->load(&HostTable::GetTable(), &host, nullptr), HOPBOX_OK);
    EXPECT_EQ(plugIn->startup(), HOPBOX_OK);
    EXPECT_EQ(services.actions.size(), 2U);
    ASSERT_EQ(plugIn->open_actions(nullptr), HOPBOX_OK);
    const int askedAtStart = std::exchange(asked, 0);
    EXPECT_GT(askedAtStart, 0);
    for (const int32_t action : {HOPBOX_ACTION_DOCUMENT, HOPBOX_ACTION_BOOK}) {
        int32_t isOn = -1;
        EXPECT_EQ(plugIn->get_action_state(action, &isOn, nullptr, nullptr), HOPBOX_OK);
        EXPECT_EQ(isOn, action == HOPBOX_ACTION_DOCUMENT);
        EXPECT_GT(std::exchange(asked, 0), 0);
    }
    EXPECT_EQ(host.GetHandleCount(), 0U);
    EXPECT_EQ(plugIn->close_actions(), HOPBOX_OK);
    EXPECT_EQ(plugIn->unload(), HOPBOX_OK);
}

// A module of an earlier form has the last function of its table less.
TEST_F(SmallHosts, UseOfAnEarlierModuleWhatItHas)
{
    static hopbox_plugin_table earlier = {};
    ASSERT_NE(FindEntry()(HOPBOX_VERSION), nullptr);
    earlier = *FindEntry()(HOPBOX_VERSION);
    earlier.size = offsetof(hopbox_plugin_table, get_resource_folder);
    ModulePlugIn plugIn([](uint32_t) -> const hopbox_plugin_table* { return &earlier; });
    FakeHost host;
    PMString error;
    ASSERT_TRUE(plugIn.Load(&host, error)) << error.GetString().toStdString();
    ResourceFileInfo info;
    EXPECT_FALSE(plugIn.GetResourceAccess().GetResourceFile(info));
    IActionComponent* component = plugIn.CreateActionComponent(error);
    ASSERT_NE(component, nullptr) << error.GetString().toStdString();
    EXPECT_EQ(component->Export(HOPBOX_ACTION_DOCUMENT, {}, error), ExportResult::Unsupported);
    EXPECT_TRUE(plugIn.Unload());
}

namespace
{
// A language in which every text of a context is the context and the text.
class Language final : public QTranslator
{
public:
    QString translate(const char* context, const char* text, const char*, int) const override
    {
        return QLatin1String(context) + QLatin1Char(':') + QLatin1String(text);
    }
    bool isEmpty() const override { return false; }
};
}  // namespace

TEST_F(SmallHosts, RefuseInTheLanguageOfTheHost)
{
    int count = 1;
    char name[] = "host";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(count, arguments);
    Language language;
    QCoreApplication::installTranslator(&language);
    static hopbox_plugin_table silent = {};
    silent.size = sizeof silent;
    silent.version = HOPBOX_VERSION;
    FakeHost host;
    const struct
    {
        hopbox_entry_function entry;
        IHostServices* services;
        QString reason;
    } cases[] = {{[](uint32_t) -> const hopbox_plugin_table* { return nullptr; }, &host,
                  "ModulePlugIn:The module does not serve version 1 of the boundary."_q},
                 {nullptr, &host, "ModulePlugIn:The module does not serve version 1 of the boundary."_q},
                 {[](uint32_t) -> const hopbox_plugin_table* { return &silent; }, nullptr,
                  "ModulePlugIn:The host gave the plug-in no services."_q},
                 {[](uint32_t) -> const hopbox_plugin_table* { return &silent; }, &host,
                  "ModulePlugIn:The plug-in gave no reason."_q}};
    for (const auto& row : cases) {
        ModulePlugIn plugIn(row.entry);
        PMString error;
        EXPECT_FALSE(plugIn.Load(row.services, error));
        EXPECT_EQ(error.GetString(), row.reason);
    }
}
