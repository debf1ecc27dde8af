#include "hosts/indesign/bridge/ScriptHost.h"

#include "hosts/indesign/bridge/ApplicationWindow.h"

#include <QLoggingCategory>

#include <limits>
#include <utility>
#include <vector>

namespace
{
Q_LOGGING_CATEGORY(cLog, "hopbox.bridge.host")

constexpr double cMost32 = std::numeric_limits<uint32_t>::max();

QString ReadText(const hopbox_text* text)
{
    return QString::fromUtf8(text->bytes, static_cast<int>(text->length));
}

QJsonObject With(const char* name, const QJsonValue& value)
{
    return {{QLatin1String(name), value}};
}

QJsonObject OfDocument(hopbox_handle document)
{
    return With("document", static_cast<double>(document));
}

QJsonObject OfBook(hopbox_handle book)
{
    return With("book", static_cast<double>(book));
}
}  // namespace

// The functions of the table; `host` is the ScriptHost.
struct HostFunctions
{
    static ScriptHost& Get(void* host) { return *static_cast<ScriptHost*>(host); }

    static ScriptCommand* Find(void* host, hopbox_handle handle)
    {
        const auto found = Get(host).mCommands.find(handle);
        return found == Get(host).mCommands.end() ? nullptr : &found->second;
    }

    // What the commands are told, at one place: false is a handle that is none.
    template <typename Tell>
    static int32_t TellCommand(void* host, hopbox_handle handle, Tell tell)
    {
        ScriptCommand* command = Find(host, handle);
        if (command == nullptr)
            return HOPBOX_FAILED;
        tell(*command);
        return HOPBOX_OK;
    }

    static int32_t AskForHandle(void* host, const char* operation, const QJsonObject& arguments,
                                hopbox_handle* handle)
    {
        double number = 0;
        const int32_t result = Get(host).AskForNumber(operation, arguments, 1, cMost32, number);
        if (result == HOPBOX_OK)
            *handle = static_cast<hopbox_handle>(number);
        return result;
    }

    static int32_t AskForInteger(void* host, const char* operation, const QJsonObject& arguments,
                                 int32_t most, int32_t* integer)
    {
        double number = 0;
        const int32_t result = Get(host).AskForNumber(operation, arguments, 0, most, number);
        if (result == HOPBOX_OK)
            *integer = static_cast<int32_t>(number);
        return result;
    }

    static int32_t Do(void* host, const char* operation, const QJsonObject& arguments)
    {
        return Get(host).Ask(operation, arguments).result;
    }

    // The script forgets its objects when an action is over.
    static void Release(void* host, hopbox_handle object) { Get(host).mCommands.erase(object); }

    static int32_t BeginModal(void* host, uint64_t* token)
    {
        *token = 1;
        Get(host).mWindow.SetResting(true);
        return HOPBOX_OK;
    }

    static void EndModal(void* host, uint64_t /*token*/) { Get(host).mWindow.SetResting(false); }

    static int32_t IsActionKnown(void* host, int32_t action, int32_t* isKnown)
    {
        *isKnown = Get(host).mActions.contains(action) ? 1 : 0;
        return HOPBOX_OK;
    }

    // The application groups scripts' actions by itself, and the script knows the menus.
    static int32_t AddAction(void* host, int32_t action, const hopbox_text* /*area*/)
    {
        Get(host).mActions.append(action);
        return HOPBOX_OK;
    }

    static int32_t AddMenuItem(void* /*host*/, int32_t /*action*/, const hopbox_text* /*menu*/, double /*at*/)
    {
        return HOPBOX_OK;
    }

    // A question for each page would take longer than the export.
    static int32_t AskForPages(void* host, hopbox_handle document)
    {
        const BridgeTalk::Answer answer = Get(host).Ask("get_pages", OfDocument(document));
        if (answer.result != HOPBOX_OK)
            return answer.result;
        if (!answer.value.isArray())
            return HOPBOX_FAILED;
        Get(host).mPages = answer.value.toArray();
        Get(host).mPagesOf = document;
        return HOPBOX_OK;
    }

    static int32_t GetPageCount(void* host, hopbox_handle document, int32_t* count)
    {
        const int32_t result = AskForPages(host, document);
        if (result == HOPBOX_OK)
            *count = Get(host).mPages.size();
        return result;
    }

    static int32_t GetPage(void* host, hopbox_handle document, int32_t index, uint32_t* page)
    {
        const int32_t result =
            document == Get(host).mPagesOf ? int32_t(HOPBOX_OK) : AskForPages(host, document);
        if (result != HOPBOX_OK)
            return result;
        const QJsonArray& pages = Get(host).mPages;
        return index >= 0 && index < pages.size() && ReadPage(pages.at(index), *page) ? HOPBOX_OK
                                                                                      : HOPBOX_FAILED;
    }

    static bool ReadPage(const QJsonValue& value, uint32_t& page)
    {
        const double number = value.toDouble();
        if (!(number >= 1 && number <= cMost32))
            return false;
        page = static_cast<uint32_t>(number);
        return true;
    }

    static int32_t GetPagesOfRange(void* host, hopbox_handle document, const hopbox_text* range,
                                   const hopbox_page_sink* sink)
    {
        QJsonObject arguments = OfDocument(document);
        arguments.insert(QStringLiteral("range"), ReadText(range));
        const BridgeTalk::Answer answer = Get(host).Ask("get_pages_of_range", arguments);
        if (answer.result != HOPBOX_OK)
            return answer.result;
        std::vector<uint32_t> pages;
        for (const QJsonValue& value : answer.value.toArray()) {
            pages.push_back(0);
            if (!ReadPage(value, pages.back()))
                return HOPBOX_FAILED;
        }
        if (!answer.value.isArray())
            return HOPBOX_FAILED;
        sink->put(sink->context, pages.data(), pages.size());
        return HOPBOX_OK;
    }

    static int32_t CreateCommand(void* host, int32_t kind, hopbox_handle* handle)
    {
        if (kind < HOPBOX_EXPORT_DOCUMENT || kind > HOPBOX_PACKAGE_BOOK)
            return HOPBOX_UNSUPPORTED;
        *handle = ++Get(host).mLastCommand;
        Get(host).mCommands[*handle].kind = kind;
        return HOPBOX_OK;
    }

    static int32_t ReadJobOptions(void* host, hopbox_handle handle, const hopbox_text* path)
    {
        ScriptCommand* command = Find(host, handle);
        const GResult read = command != nullptr
                                 ? command->preset.Read(ReadText(path))
                                 : GResult::Failure(QStringLiteral("there is no such command"));
        if (read.HasSucceeded())
            return HOPBOX_OK;
        qCWarning(cLog, "the job options can't be used: %s", qUtf8Printable(read.GetReason()));
        return HOPBOX_FAILED;
    }

    static int32_t SetSwitch(void* host, hopbox_handle handle, int32_t setting, int32_t isOn)
    {
        static const char* const cProperties[] = {
            "useDocumentBleedWithPDF", "includeSlugWithPDF", "cropMarks",           "bleedMarks",
            "registrationMarks",       "colorBars",          "pageInformationMarks"};
        static_assert(std::size(cProperties) == HOPBOX_SWITCHES);
        if (setting < 0 || setting >= HOPBOX_SWITCHES)
            return HOPBOX_UNSUPPORTED;
        return TellCommand(host, handle, [=](ScriptCommand& command) {
            command.preset.Set(cProperties[setting], isOn != 0);
        });
    }

    static int32_t SetLength(void* host, hopbox_handle handle, int32_t setting, double points)
    {
        // The weight is one of three words.
        static const char* const cProperties[] = {"bleedTop",     "bleedBottom",     "bleedInside",
                                                  "bleedOutside", "pageMarksOffset", nullptr};
        static_assert(std::size(cProperties) == HOPBOX_LENGTHS);
        if (setting < 0 || setting >= HOPBOX_LENGTHS)
            return HOPBOX_UNSUPPORTED;
        return TellCommand(host, handle, [=](ScriptCommand& command) {
            if (setting == HOPBOX_MARK_WEIGHT)
                command.preset.SetMarkWeight(points);
            else
                command.preset.SetLength(cProperties[setting], points);
        });
    }

    static int32_t GetSpreads(void* host, hopbox_handle handle, int32_t* areJoined)
    {
        return TellCommand(host, handle, [=](const ScriptCommand& command) {
            *areJoined = command.preset.Get("exportReaderSpreads").toBool() ? 1 : 0;
        });
    }

    static int32_t SetSpreads(void* host, hopbox_handle handle, int32_t areJoined)
    {
        return TellCommand(host, handle, [=](ScriptCommand& command) {
            command.preset.Set("exportReaderSpreads", areJoined != 0);
        });
    }

    static int32_t SetPages(void* host, hopbox_handle handle, hopbox_handle document, const uint32_t* pages,
                            size_t count, int32_t areJoined)
    {
        return TellCommand(host, handle, [=](ScriptCommand& command) {
            command.source = document;
            command.pages = {};
            for (size_t i = 0; i < count; ++i)
                command.pages.append(static_cast<double>(pages[i]));
            command.preset.Set("exportReaderSpreads", areJoined != 0);
        });
    }

    static int32_t SetPackageSetting(void* host, hopbox_handle handle, int32_t setting, int32_t isOn)
    {
        if (setting < 0 || setting >= HOPBOX_PACKAGE_SETTINGS)
            return HOPBOX_UNSUPPORTED;
        return TellCommand(host, handle,
                           [=](ScriptCommand& command) { command.packageSettings[setting] = isOn != 0; });
    }

    static int32_t SetSource(void* host, hopbox_handle handle, hopbox_handle source)
    {
        return TellCommand(host, handle, [=](ScriptCommand& command) { command.source = source; });
    }

    static int32_t RunCommand(void* host, hopbox_handle handle)
    {
        ScriptCommand* command = Find(host, handle);
        return command == nullptr ? HOPBOX_FAILED : Get(host).Run(*command);
    }

    static int32_t WriteReport(void* host, hopbox_handle handle)
    {
        const ScriptCommand* command = Find(host, handle);
        if (command == nullptr)
            return HOPBOX_FAILED;
        QJsonObject arguments = OfDocument(command->source);
        arguments.insert(QStringLiteral("output"), command->output);
        return Do(host, "write_report", arguments);
    }
};

const hopbox_host_table& ScriptHost::GetTable()
{
    using Self = HostFunctions;
    static const hopbox_host_table cTable = [] {
        constexpr int32_t cMostDocuments = 1000000;
        hopbox_host_table table{};
        table.size = sizeof table;
        table.version = HOPBOX_VERSION;
        table.release = Self::Release;
        table.get_unit = [](void* host, int32_t* unit) {
            return Self::AskForInteger(host, "get_unit", {}, HOPBOX_MILLIMETRES, unit);
        };
        table.begin_modal = Self::BeginModal;
        table.end_modal = Self::EndModal;
        table.is_action_known = Self::IsActionKnown;
        table.add_action = Self::AddAction;
        table.add_menu_item = Self::AddMenuItem;
        table.get_front_document = [](void* host, hopbox_handle* document) {
            return Self::AskForHandle(host, "get_front_document", {}, document);
        };
        table.find_open_document = [](void* host, const hopbox_text* path, hopbox_handle* document) {
            return Self::AskForHandle(host, "find_open_document", With("path", ReadText(path)), document);
        };
        table.open_document = [](void* host, const hopbox_text* path, hopbox_handle* document) {
            return Self::AskForHandle(host, "open_document", With("path", ReadText(path)), document);
        };
        table.close_document = [](void* host, hopbox_handle document) {
            return Self::Do(host, "close_document", OfDocument(document));
        };
        table.is_document_saved = [](void* host, hopbox_handle document, int32_t* isSaved) {
            return Self::AskForInteger(host, "is_document_saved", OfDocument(document), 1, isSaved);
        };
        table.save_document = [](void* host, hopbox_handle document) {
            return Self::Do(host, "save_document", OfDocument(document));
        };
        table.get_document_file = [](void* host, hopbox_handle document, const hopbox_sink* path) {
            return Self::Get(host).AskForText("get_document_file", OfDocument(document), path);
        };
        table.get_document_name = [](void* host, hopbox_handle document, const hopbox_sink* name) {
            return Self::Get(host).AskForText("get_document_name", OfDocument(document), name);
        };
        table.get_page_count = Self::GetPageCount;
        table.get_page = Self::GetPage;
        table.get_pages_of_range = Self::GetPagesOfRange;
        table.get_missing_fonts = [](void* host, hopbox_handle document, const hopbox_sink* names) {
            return Self::Get(host).AskForTexts("get_missing_fonts", OfDocument(document), names);
        };
        table.get_active_book = [](void* host, hopbox_handle* book) {
            return Self::AskForHandle(host, "get_active_book", {}, book);
        };
        table.get_book_file = [](void* host, hopbox_handle book, const hopbox_sink* path) {
            return Self::Get(host).AskForText("get_book_file", OfBook(book), path);
        };
        table.get_book_name = [](void* host, hopbox_handle book, const hopbox_sink* name) {
            return Self::Get(host).AskForText("get_book_name", OfBook(book), name);
        };
        table.is_book_modified = [](void* host, hopbox_handle book, int32_t* isModified) {
            return Self::AskForInteger(host, "is_book_modified", OfBook(book), 1, isModified);
        };
        table.save_book = [](void* host, hopbox_handle book) {
            return Self::Do(host, "save_book", OfBook(book));
        };
        table.get_book_document_count = [](void* host, hopbox_handle book, int32_t* count) {
            return Self::AskForInteger(host, "get_book_document_count", OfBook(book), cMostDocuments, count);
        };
        table.get_book_document_file = [](void* host, hopbox_handle book, int32_t index,
                                          const hopbox_sink* path) {
            QJsonObject arguments = OfBook(book);
            arguments.insert(QStringLiteral("index"), index);
            return Self::Get(host).AskForText("get_book_document_file", arguments, path);
        };
        table.create_command = Self::CreateCommand;
        table.read_job_options = Self::ReadJobOptions;
        table.set_switch = Self::SetSwitch;
        table.set_length = Self::SetLength;
        table.get_spreads = Self::GetSpreads;
        table.set_spreads = Self::SetSpreads;
        table.set_output = [](void* host, hopbox_handle handle, const hopbox_text* path) {
            return Self::TellCommand(host, handle,
                                     [=](ScriptCommand& command) { command.output = ReadText(path); });
        };
        table.set_pages = Self::SetPages;
        table.set_name = [](void* host, hopbox_handle handle, const hopbox_text* name) {
            return Self::TellCommand(host, handle,
                                     [=](ScriptCommand& command) { command.name = ReadText(name); });
        };
        table.set_document = Self::SetSource;
        table.set_book = Self::SetSource;
        table.set_package_setting = Self::SetPackageSetting;
        table.run_command = Self::RunCommand;
        table.write_report = Self::WriteReport;
        return table;
    }();
    return cTable;
}
