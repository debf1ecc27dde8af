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
#include <thread>

using Table = hopbox_host_table;

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
    const std::tuple<hopbox_entry_function, IHostServices*, QString> cases[] = {
        {[](uint32_t) -> const hopbox_plugin_table* { return nullptr; }, &host,
         "ModulePlugIn:The module does not serve version 1 of the boundary."_q},
        {nullptr, &host, "ModulePlugIn:The module does not serve version 1 of the boundary."_q},
        {[](uint32_t) -> const hopbox_plugin_table* { return &silent; }, nullptr,
         "ModulePlugIn:The host gave the plug-in no services."_q},
        {[](uint32_t) -> const hopbox_plugin_table* { return &silent; }, &host,
         "ModulePlugIn:The plug-in gave no reason."_q}};
    for (const auto& [entry, services, reason] : cases) {
        ModulePlugIn plugIn(entry);
        PMString error;
        EXPECT_FALSE(plugIn.Load(services, error));
        EXPECT_EQ(error.GetString(), reason);
    }
}
