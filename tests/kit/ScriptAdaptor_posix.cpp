#include "hosts/indesign/bridge/ApplicationWindow.h"
#include "hosts/indesign/bridge/MeetingPlace.h"
#include "hosts/indesign/bridge/ScriptHost.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QSemaphore>
#include <QThread>

// The script bridge over the simulated application, as a library for hopbox-host-check. The script answers
// only while a choice of its menu runs, and the talk with it needs an event loop, which the check's calls do
// not come from. So a thread is the helper, within one choice that lasts until the end, and each call is
// handed over to it.

namespace
{
using Table = hopbox_host_table;

class Helper : public QThread
{
public:
    Helper()
    {
        constexpr int cPatience = 60000;
        start();
        mIsChosen = mChoice.tryAcquire(1, cPatience);
    }

    // Runs work on this thread while the caller waits; false without an application.
    template <class Work>
    bool Do(const Work& work)
    {
        return mIsChosen && QMetaObject::invokeMethod(mApplication, work, Qt::BlockingQueuedConnection);
    }

    // Has the application do it, and waits until it has.
    int32_t Order(QJsonObject order)
    {
        const bool isDone = Do([&] {
            Write(order);
            Write({{QStringLiteral("do"), QStringLiteral("report")}});
            while (!mSaid.contains("\"idle\""))
                QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            mSaid.clear();
        });
        return isDone ? HOPBOX_OK : HOPBOX_FAILED;
    }

    void End()
    {
        Do([&] { mApplication->closeWriteChannel(); });
        wait();
    }

    ScriptHost* host = nullptr;

protected:
    void run() override
    {
        MeetingPlace place;
        ApplicationWindow window;
        BridgeTalk* hostTalk = nullptr;
        QProcess application;
        BridgeTalk::Calls calls;
        calls.welcome = [&] {
            hostTalk = &*mTalk;
            Write({{QStringLiteral("do"), QStringLiteral("choose")}});
            return QJsonObject{{QStringLiteral("welcome"), BridgeTalk::cVersion}};
        };
        calls.getState = [](int32_t) { return QJsonObject{{QStringLiteral("enabled"), true}}; };
        calls.choose = [&](int32_t) {
            mChoice.release();
            exec();
        };
        calls.ended = [] {};
        BridgeTalk talk(place.GetSecret(), {}, calls);
        ScriptHost scriptHost(hostTalk, window);
        mTalk = &talk;
        host = &scriptHost;
        if (!place.Enter())
            return;
        place.Announce(talk.Listen());
        Start(application);
        exec();
    }

private:
    void Start(QProcess& application)
    {
        mApplication = &application;
        connect(&application, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), [this] { quit(); });
        connect(&application, &QProcess::readyRead, [&] { mSaid += application.readAll(); });
        const QString folder = QStringLiteral(SIMULATION_FOLDER);
        const QJsonObject setting{
            {QStringLiteral("userData"), qEnvironmentVariable("MORVANE_ROOT") + QStringLiteral("/AppData")},
            {QStringLiteral("script"), QStringLiteral(SCRIPT)}};
        application.start(QStringLiteral(SIMULATION),
                          {QString::fromUtf8(QJsonDocument(setting).toJson()),
                           folder + QStringLiteral("/types.js"), folder + QStringLiteral("/application.js")});
    }

    void Write(const QJsonObject& order)
    {
        mApplication->write(QJsonDocument(order).toJson(QJsonDocument::Compact) + '\n');
    }

    QSemaphore mChoice;
    bool mIsChosen = false;
    BridgeTalk* mTalk = nullptr;
    QProcess* mApplication = nullptr;
    QByteArray mSaid;
};

Helper& GetHelper()
{
    static Helper* const helper = [] {
        auto* const made = new Helper;
        qAddPostRoutine([] { GetHelper().End(); });
        return made;
    }();
    return *helper;
}

// What a call is given, and for sinks what comes back: on the caller's thread.
template <class Argument>
struct Passed
{
    Argument Get() const { return argument; }
    void HandBack() const {}

    Argument argument;
};
template <>
struct Passed<const hopbox_sink*>
{
    const hopbox_sink* Get() const { return texts; }
    void HandBack() const
    {
        for (const QString& text : texts.GetTexts())
            Boundary::Put(argument, text);
    }

    const hopbox_sink* argument;
    Boundary::TextSink texts{};
};
template <>
struct Passed<const hopbox_page_sink*>
{
    const hopbox_page_sink* Get() const { return pages; }
    void HandBack() const
    {
        argument->put(argument->context, pages.GetPages().data(), pages.GetPages().size());
    }

    const hopbox_page_sink* argument;
    Boundary::PageSink pages{};
};

template <auto operation>
struct Pass;

template <class Result, class... Parameters, Result (*Table::*operation)(void*, Parameters...)>
struct Pass<operation>
{
    static Result Call(void* /*host*/, Parameters... parameters)
    {
        return Run(Passed<Parameters>{parameters}...);
    }

    static Result Run(const Passed<Parameters>&... passed)
    {
        int32_t result = HOPBOX_FAILED;
        GetHelper().Do([&] {
            const auto function = ScriptHost::GetTable().*operation;
            if constexpr (std::is_void_v<Result>)
                function(GetHelper().host, passed.Get()...);
            else
                result = function(GetHelper().host, passed.Get()...);
        });
        (passed.HandBack(), ...);
        return Result(result);
    }
};

template <auto... operations>
void PassAll(Table& table)
{
    ((table.*operations = ScriptHost::GetTable().*operations ? Pass<operations>::Call : nullptr), ...);
}

const Table& GetTable()
{
    using T = Table;
    static const Table table = [] {
        Table made = {};
        made.size = sizeof made;
        made.version = HOPBOX_VERSION;
        PassAll<&T::release, &T::get_unit, &T::show_alert, &T::begin_modal, &T::end_modal,
                &T::is_action_known, &T::add_action, &T::add_menu_item, &T::get_front_document,
                &T::find_open_document, &T::open_document, &T::close_document, &T::is_document_saved,
                &T::save_document, &T::get_document_file, &T::get_document_name, &T::get_page_count,
                &T::get_page, &T::get_pages_of_range, &T::get_missing_fonts, &T::get_active_book,
                &T::get_book_file, &T::get_book_name, &T::is_book_modified, &T::save_book,
                &T::get_book_document_count, &T::get_book_document_file, &T::create_command,
                &T::read_job_options, &T::set_switch, &T::set_length, &T::get_spreads, &T::set_spreads,
                &T::set_output, &T::set_pages, &T::set_name, &T::set_document, &T::set_book,
                &T::set_package_setting, &T::run_command, &T::write_report>(made);
        return made;
    }();
    return table;
}

QString Read(const hopbox_text& text)
{
    return QString::fromUtf8(text.bytes, static_cast<int>(text.length));
}

int32_t Order(const char* what, const QString& path = {})
{
    return GetHelper().Order({{QStringLiteral("do"), QLatin1String(what)}, {QStringLiteral("path"), path}});
}

int32_t OpenSample(void*, const hopbox_text* folder)
{
    const QString document = Read(*folder) + QStringLiteral("/Sample.indd");
    const QString book = Read(*folder) + QStringLiteral("/Sample.indb");
    QFile documentFile(document);
    QFile bookFile(book);
    if (!documentFile.open(QIODevice::WriteOnly) || !bookFile.open(QIODevice::WriteOnly))
        return HOPBOX_FAILED;
    documentFile.write(R"({"pages":["1","2"],"links":[],"fonts":[["Garamond","INSTALLED"]]})");
    bookFile.write(R"({"documents":[")" + document.toUtf8() + R"("],"modified":true})");
    documentFile.close();
    bookFile.close();
    const int32_t result = Order("open", document);
    return result == HOPBOX_OK ? Order("book", book) : result;
}
}  // namespace

extern "C" Q_DECL_EXPORT const hopbox_adaptor* hopbox_adaptor_entry(uint32_t)
{
    static const hopbox_adaptor adaptor = {
        sizeof adaptor,
        HOPBOX_VERSION,
        &GetTable(),
        nullptr,
        OpenSample,
        [](void*) { return Order("close"); },
        nullptr,  // the script forgets all its objects at once, when its choice ends
        [](void*) { return Order("cancel"); },
        [](void*, const hopbox_text* path) { return Order("new", Read(*path)); },
        nullptr,
        nullptr};
    return &adaptor;
}
