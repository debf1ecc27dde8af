#include "apps/host_check/CommandChecks.h"

#include "apps/host_check/CheckReport.h"
#include "apps/host_check/HeldHandle.h"
#include "apps/host_check/TextTaker.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

namespace
{
using Table = hopbox_host_table;
using Handle = hopbox_handle;
using Boundary::PassedText;

QByteArray Read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QStringList List(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System);
}

// The job options of the check, without their end.
QString WriteDamaged(const QString& folder)
{
    const QString path = folder + QStringLiteral("/Damaged.joboptions");
    QFile file(path);
    const QByteArray whole = Read(folder + QStringLiteral("/Check.joboptions"));
    return file.open(QIODevice::WriteOnly) && file.write(whole.left(whole.size() / 2)) > 0 ? path : QString();
}

bool IsPackage(hopbox_command kind)
{
    return kind == HOPBOX_PACKAGE_DOCUMENT || kind == HOPBOX_PACKAGE_BOOK;
}

// As the plug-in reserves the place of a PDF, in a folder of its own, or that of a package.
QString ReserveFile(const QString& folder)
{
    QDir().mkpath(folder);
    const QString path = folder + QStringLiteral("/Sample \u00E9.pdf");
    QFile(path).open(QIODevice::WriteOnly);
    return path;
}

QString ReserveFolder(const QString& folder)
{
    QDir().mkpath(folder + QStringLiteral("/Package"));
    return folder + QStringLiteral("/Package");
}

// Whether its place holds nothing, and nothing stands beside it.
bool IsNothingLeft(const QString& output)
{
    const QFileInfo info(output);
    const bool isEmpty = info.isDir() ? List(output).isEmpty() : info.size() == 0;
    QStringList beside = List(info.path());
    beside.removeAll(info.fileName());
    return isEmpty && beside.isEmpty();
}
}  // namespace

CommandChecks::CommandChecks(const hopbox_adaptor& adaptor, const WatchedHost& host, const QString& folder,
                             CheckReport& report)
    : mAdaptor(adaptor), mHost(host), mFolder(folder), mReport(report)
{
}

void CommandChecks::Run()
{
    HeldHandle none(mHost);
    for (const int32_t kind : {0, HOPBOX_PACKAGE_BOOK + 1, 99})
        mReport.Expect(mHost.Call(&Table::create_command, kind, &none.value) == HOPBOX_UNSUPPORTED,
                       "create_command", QStringLiteral("HOPBOX_UNSUPPORTED for kind %1").arg(kind));
    mReport.Expect(mHost.Call(&Table::run_command, Handle(0)) != HOPBOX_OK, "run_command",
                   QStringLiteral("the handle 0, which is none, is refused"));
    HeldHandle document(mHost);
    if (mHost.Call(&Table::get_front_document, &document.value) == HOPBOX_OK) {
        CheckKind(HOPBOX_EXPORT_DOCUMENT, document.value);
        if (mHost.GetTable().write_report != nullptr)
            CheckKind(HOPBOX_PACKAGE_DOCUMENT, document.value);
    }
    HeldHandle book(mHost);
    if (mHost.Call(&Table::get_active_book, &book.value) != HOPBOX_OK)
        return;
    CheckKind(HOPBOX_EXPORT_BOOK, book.value);
    if (mHost.Makes(HOPBOX_PACKAGE_BOOK))
        CheckKind(HOPBOX_PACKAGE_BOOK, book.value);
    else
        mReport.Lack("create_command", QStringLiteral("books can't be packaged"));
}

void CommandChecks::CheckKind(hopbox_command kind, Handle source)
{
    CheckSettings(kind);
    CheckFailures(kind, source);
    CheckCancel(kind, source);
    CheckResult(kind, source);
}

// Whether a setting is taken, or its lack is said.
void CommandChecks::ExpectTaken(int32_t result, const char* operation, int32_t setting)
{
    mReport.Expect(result == HOPBOX_OK || result == HOPBOX_UNSUPPORTED, operation,
                   QStringLiteral("setting %1: HOPBOX_OK or HOPBOX_UNSUPPORTED").arg(setting));
    if (result == HOPBOX_UNSUPPORTED)
        mReport.Lack(operation, QStringLiteral("setting %1 has no effect").arg(setting));
}

void CommandChecks::CheckSettings(hopbox_command kind)
{
    HeldHandle command(mHost);
    const int32_t owner = kind == HOPBOX_EXPORT_BOOK ? HOPBOX_PDF_PREFERENCES : kind;
    if (mHost.Call(&Table::create_command, owner, &command.value) != HOPBOX_OK)
        return;
    const QString noSetting = QStringLiteral("HOPBOX_UNSUPPORTED for a setting that there is not");
    if (IsPackage(kind)) {
        if (mHost.GetTable().set_package_setting == nullptr)
            return;
        for (int32_t setting = 0; setting < HOPBOX_PACKAGE_SETTINGS; ++setting)
            ExpectTaken(mHost.Call(&Table::set_package_setting, command.value, setting, 1),
                        "set_package_setting", setting);
        mReport.Expect(mHost.Call(&Table::set_package_setting, command.value, 99, 1) == HOPBOX_UNSUPPORTED,
                       "set_package_setting", noSetting);
        return;
    }
    const PassedText missing(mFolder + QStringLiteral("/none.joboptions"));
    mReport.Expect(mHost.Call(&Table::read_job_options, command.value, &missing.Get()) != HOPBOX_OK,
                   "read_job_options", QStringLiteral("a file that is not there is refused"));
    const PassedText damaged(WriteDamaged(mFolder));
    if (mHost.Call(&Table::read_job_options, command.value, &damaged.Get()) == HOPBOX_OK)
        mReport.Lack("read_job_options", QStringLiteral("a file that breaks off is taken"));
    if (mHost.GetTable().set_switch != nullptr) {
        for (int32_t setting = 0; setting < HOPBOX_SWITCHES; ++setting)
            ExpectTaken(mHost.Call(&Table::set_switch, command.value, setting, 0), "set_switch", setting);
        mReport.Expect(mHost.Call(&Table::set_switch, command.value, 99, 0) == HOPBOX_UNSUPPORTED,
                       "set_switch", noSetting);
    }
    if (mHost.GetTable().set_length != nullptr) {
        for (int32_t setting = 0; setting < HOPBOX_LENGTHS; ++setting)
            ExpectTaken(mHost.Call(&Table::set_length, command.value, setting, 3.0), "set_length", setting);
        mReport.Expect(mHost.Call(&Table::set_length, command.value, 99, 0.0) == HOPBOX_UNSUPPORTED,
                       "set_length", noSetting);
    }
    CheckSpreadsAndName(command.value, kind);
}

void CommandChecks::CheckSpreadsAndName(Handle command, hopbox_command kind)
{
    const Table& table = mHost.GetTable();
    if (table.get_spreads != nullptr && table.set_spreads != nullptr) {
        for (const int32_t wanted : {1, 0}) {
            int32_t areJoined = 7;
            const int32_t result = mHost.Call(&Table::set_spreads, command, wanted);
            ExpectTaken(result, "set_spreads", wanted);
            mReport.Expect(result == HOPBOX_UNSUPPORTED ||
                               (mHost.Call(&Table::get_spreads, command, &areJoined) == HOPBOX_OK &&
                                areJoined == wanted),
                           "get_spreads", QStringLiteral("%1 after it was set").arg(wanted));
        }
    }
    if (table.set_name == nullptr || kind != HOPBOX_EXPORT_DOCUMENT)
        return;
    const PassedText name(QStringLiteral("Sample \u00E9"));
    mReport.Expect(mHost.Call(&Table::set_name, command, &name.Get()) == HOPBOX_OK, "set_name",
                   QStringLiteral("a name is taken"));
}

// A command is told what it has to know; gives whether it was taken.
template <class Operation, class... Arguments>
bool CommandChecks::Tell(const char* name, Operation operation, Arguments... arguments)
{
    const bool isTaken = mHost.Call(operation, arguments...) == HOPBOX_OK;
    mReport.Expect(isTaken, name, QStringLiteral("a command takes it"));
    return isTaken;
}

bool CommandChecks::TellSettings(Handle command)
{
    const PassedText jobOptions(mFolder + QStringLiteral("/Check.joboptions"));
    return Tell("read_job_options", &Table::read_job_options, command, &jobOptions.Get());
}

// A book takes its settings by a command of their own, which runs before.
bool CommandChecks::TellBookSettings()
{
    HeldHandle preferences(mHost);
    return Tell("create_command", &Table::create_command, int32_t(HOPBOX_PDF_PREFERENCES),
                &preferences.value) &&
           TellSettings(preferences.value) && Tell("run_command", &Table::run_command, preferences.value);
}

// The first page.
bool CommandChecks::TellPages(Handle command, Handle document)
{
    uint32_t page = 0;
    return Tell("get_page", &Table::get_page, document, 0, &page) &&
           Tell("set_pages", &Table::set_pages, command, document, static_cast<const uint32_t*>(&page),
                size_t(1), 0);
}

bool CommandChecks::TellSource(hopbox_command kind, Handle command, Handle source)
{
    switch (kind) {
        case HOPBOX_EXPORT_DOCUMENT:
            return TellSettings(command) && TellPages(command, source);
        case HOPBOX_PACKAGE_DOCUMENT:
            return Tell("set_document", &Table::set_document, command, source);
        case HOPBOX_EXPORT_BOOK:
            return TellBookSettings() && Tell("set_book", &Table::set_book, command, source);
        default:
            return Tell("set_book", &Table::set_book, command, source);
    }
}

// A command, all told but not run; 0 when that was refused.
Handle CommandChecks::Make(hopbox_command kind, Handle source, const QString& output)
{
    HeldHandle command(mHost);
    const PassedText path(output);
    if (!Tell("create_command", &Table::create_command, int32_t(kind), &command.value) ||
        !TellSource(kind, command.value, source) ||
        !Tell("set_output", &Table::set_output, command.value, &path.Get()))
        return 0;
    return std::exchange(command.value, 0);
}

// What a command can't do, and what it was not told.
void CommandChecks::CheckFailures(hopbox_command kind, Handle source)
{
    const QString nowhere = mFolder + QStringLiteral("/Check.joboptions/Sample");
    HeldHandle command(mHost);
    command.value = Make(kind, source, nowhere);
    if (command.value == 0)
        return;
    mReport.Expect(mHost.Call(&Table::run_command, command.value) != HOPBOX_OK && !QFileInfo::exists(nowhere),
                   "run_command",
                   QStringLiteral("kind %1: a place that can't be written is a failure").arg(kind));
    HeldHandle untold(mHost);
    if (mHost.Call(&Table::create_command, int32_t(kind), &untold.value) == HOPBOX_OK)
        mReport.Expect(mHost.Call(&Table::run_command, untold.value) != HOPBOX_OK, "run_command",
                       QStringLiteral("kind %1: a command that was told nothing is a failure").arg(kind));
    if (kind == HOPBOX_PACKAGE_DOCUMENT)
        mReport.Expect(mHost.Call(&Table::write_report, command.value) != HOPBOX_OK, "write_report",
                       QStringLiteral("a report without its package is a failure"));
}

QString CommandChecks::Reserve(hopbox_command kind, const char* purpose) const
{
    const QString folder = QStringLiteral("%1/%2 %3").arg(mFolder, QLatin1String(purpose)).arg(kind);
    return IsPackage(kind) ? ReserveFolder(folder) : ReserveFile(folder);
}

void CommandChecks::CheckCancel(hopbox_command kind, Handle source)
{
    if (mAdaptor.cancel_next == nullptr)
        return;
    const QString output = Reserve(kind, "Cancelled");
    HeldHandle command(mHost);
    command.value = Make(kind, source, output);
    if (command.value == 0)
        return;
    mReport.Expect(mAdaptor.cancel_next(mAdaptor.host) == HOPBOX_OK &&
                       mHost.Call(&Table::run_command, command.value) == HOPBOX_CANCELLED,
                   "run_command",
                   QStringLiteral("kind %1: HOPBOX_CANCELLED when the user pressed Cancel").arg(kind));
    mReport.Expect(IsNothingLeft(output), "run_command",
                   QStringLiteral("kind %1: a command that was cancelled leaves nothing").arg(kind));
}

void CommandChecks::CheckResult(hopbox_command kind, Handle source)
{
    TextTaker file;
    mHost.Call(kind == HOPBOX_EXPORT_BOOK || kind == HOPBOX_PACKAGE_BOOK ? &Table::get_book_file
                                                                         : &Table::get_document_file,
               source, file.Get());
    const QString path = file.GetTexts().value(0);
    const QByteArray before = Read(path);
    const QString output = Reserve(kind, "Result");
    HeldHandle command(mHost);
    command.value = Make(kind, source, output);
    if (command.value == 0)
        return;
    const bool isDone = mHost.Call(&Table::run_command, command.value) == HOPBOX_OK;
    if (IsPackage(kind))
        mReport.Expect(isDone && !List(output).isEmpty(), "run_command",
                       QStringLiteral("kind %1: a package's folder is filled").arg(kind));
    else
        mReport.Expect(isDone && Read(output).startsWith("%PDF-"), "run_command",
                       QStringLiteral("kind %1: a PDF at the place that was told").arg(kind));
    for (const QString& name : List(QFileInfo(output).path()))
        mReport.Expect(name.startsWith(QFileInfo(output).completeBaseName()), "run_command",
                       QStringLiteral("nothing but the result is left behind: %1").arg(name));
    mReport.Expect(Read(path) == before, "run_command",
                   QStringLiteral("kind %1: the file that it is made from is as it was").arg(kind));
    if (kind != HOPBOX_PACKAGE_DOCUMENT)
        return;
    const int count = List(output).size();
    mReport.Expect(
        mHost.Call(&Table::write_report, command.value) == HOPBOX_OK && List(output).size() > count,
        "write_report", QStringLiteral("a report in the package's folder"));
}
