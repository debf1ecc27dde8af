#include "apps/host_check/CommandChecks.h"

#include "apps/host_check/CheckReport.h"
#include "apps/host_check/HeldHandle.h"
#include "apps/host_check/TextTaker.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

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
    HeldHandle document(mHost);
    HeldHandle none(mHost);
    mReport.Expect(mHost.Call(&Table::create_command, 99, &none.value) == HOPBOX_UNSUPPORTED,
                   "create_command", QStringLiteral("HOPBOX_UNSUPPORTED for a kind that there is not"));
    if (mHost.Call(&Table::get_front_document, &document.value) != HOPBOX_OK)
        return;
    CheckFailures(document.value);
    CheckExport(document.value);
    if (mHost.GetTable().write_report != nullptr)
        CheckPackage(document.value);
}

void CommandChecks::CheckSettings(Handle command)
{
    const PassedText missing(mFolder + QStringLiteral("/none.joboptions"));
    mReport.Expect(mHost.Call(&Table::read_job_options, command, &missing.Get()) != HOPBOX_OK,
                   "read_job_options", QStringLiteral("a file that is not there is refused"));
    const auto look = [this](int32_t result, const char* operation, int32_t setting) {
        mReport.Expect(result == HOPBOX_OK || result == HOPBOX_UNSUPPORTED, operation,
                       QStringLiteral("setting %1: HOPBOX_OK or HOPBOX_UNSUPPORTED").arg(setting));
        if (result == HOPBOX_UNSUPPORTED)
            mReport.Lack(operation, QStringLiteral("setting %1 has no effect").arg(setting));
    };
    if (mHost.GetTable().set_switch != nullptr) {
        for (int32_t setting = HOPBOX_USE_DOCUMENT_BLEED; setting <= HOPBOX_PAGE_INFORMATION; ++setting)
            look(mHost.Call(&Table::set_switch, command, setting, 0), "set_switch", setting);
        mReport.Expect(mHost.Call(&Table::set_switch, command, 99, 0) == HOPBOX_UNSUPPORTED, "set_switch",
                       QStringLiteral("HOPBOX_UNSUPPORTED for a setting that there is not"));
    }
    if (mHost.GetTable().set_length == nullptr)
        return;
    for (int32_t setting = HOPBOX_BLEED_TOP; setting <= HOPBOX_MARK_WEIGHT; ++setting)
        look(mHost.Call(&Table::set_length, command, setting, 3.0), "set_length", setting);
    mReport.Expect(mHost.Call(&Table::set_length, command, 99, 0.0) == HOPBOX_UNSUPPORTED, "set_length",
                   QStringLiteral("HOPBOX_UNSUPPORTED for a setting that there is not"));
}

// An export of the first page, all told but not run; 0 when that was refused.
Handle CommandChecks::MakeExport(Handle document, const QString& output)
{
    Handle command = 0;
    uint32_t page = 0;
    const PassedText path(output);
    const PassedText jobOptions(mFolder + QStringLiteral("/Check.joboptions"));
    const bool isMade =
        mHost.Call(&Table::create_command, int32_t(HOPBOX_EXPORT_DOCUMENT), &command) == HOPBOX_OK;
    mReport.Expect(isMade, "create_command", QStringLiteral("every adaptor makes exports"));
    if (!isMade)
        return 0;
    const bool isTold = mHost.Call(&Table::read_job_options, command, &jobOptions.Get()) == HOPBOX_OK &&
                        mHost.Call(&Table::set_output, command, &path.Get()) == HOPBOX_OK &&
                        mHost.Call(&Table::get_page, document, 0, &page) == HOPBOX_OK &&
                        mHost.Call(&Table::set_pages, command, document, static_cast<const uint32_t*>(&page),
                                   size_t(1), 0) == HOPBOX_OK;
    mReport.Expect(isTold, "create_command", QStringLiteral("an export takes job options, output and pages"));
    return command;
}

// A package, all told but not run; 0 from a host that has none.
Handle CommandChecks::MakePackage(Handle document, const QString& output)
{
    Handle command = 0;
    const PassedText path(output);
    if (mHost.Call(&Table::create_command, int32_t(HOPBOX_PACKAGE_DOCUMENT), &command) != HOPBOX_OK)
        return 0;
    mReport.Expect(mHost.Call(&Table::set_document, command, document) == HOPBOX_OK &&
                       mHost.Call(&Table::set_output, command, &path.Get()) == HOPBOX_OK,
                   "create_command", QStringLiteral("a package takes document and folder"));
    return command;
}

// What a command can't do, and what it was not told.
void CommandChecks::CheckFailures(Handle document)
{
    const QString nowhere = mFolder + QStringLiteral("/Check.joboptions/Sample");
    const bool hasPackages = mHost.GetTable().write_report != nullptr;
    for (const bool isPackage : {false, true}) {
        if (isPackage && !hasPackages)
            continue;
        HeldHandle command(mHost);
        command.value = isPackage ? MakePackage(document, nowhere) : MakeExport(document, nowhere);
        if (command.value == 0)
            continue;
        mReport.Expect(
            mHost.Call(&Table::run_command, command.value) != HOPBOX_OK && !QFileInfo::exists(nowhere),
            "run_command", QStringLiteral("a place that can't be written is a failure"));
        const int32_t kind = isPackage ? HOPBOX_PACKAGE_DOCUMENT : HOPBOX_EXPORT_DOCUMENT;
        HeldHandle untold(mHost);
        if (mHost.Call(&Table::create_command, kind, &untold.value) == HOPBOX_OK)
            mReport.Expect(mHost.Call(&Table::run_command, untold.value) != HOPBOX_OK, "run_command",
                           QStringLiteral("a command that was told nothing is a failure"));
        if (isPackage)
            mReport.Expect(mHost.Call(&Table::write_report, command.value) != HOPBOX_OK, "write_report",
                           QStringLiteral("a report without its package is a failure"));
    }
}

void CommandChecks::CheckCancel(Handle command, const QString& output)
{
    if (mAdaptor.cancel_next == nullptr || command == 0)
        return;
    mReport.Expect(mAdaptor.cancel_next(mAdaptor.host) == HOPBOX_OK &&
                       mHost.Call(&Table::run_command, command) == HOPBOX_CANCELLED,
                   "run_command", QStringLiteral("HOPBOX_CANCELLED when the user pressed Cancel"));
    mReport.Expect(IsNothingLeft(output), "run_command",
                   QStringLiteral("a command that was cancelled leaves nothing"));
}

void CommandChecks::CheckExport(Handle document)
{
    HeldHandle cancelled(mHost);
    const QString place = ReserveFile(mFolder + QStringLiteral("/Cancelled"));
    cancelled.value = MakeExport(document, place);
    CheckCancel(cancelled.value, place);

    const QString output = ReserveFile(mFolder + QStringLiteral("/Export"));
    HeldHandle command(mHost);
    command.value = MakeExport(document, output);
    if (command.value == 0)
        return;
    mReport.Expect(
        mHost.Call(&Table::run_command, command.value) == HOPBOX_OK && Read(output).startsWith("%PDF-"),
        "run_command", QStringLiteral("a PDF at the place that was told"));
    for (const QString& name : List(QFileInfo(output).path()))
        mReport.Expect(name.startsWith(QStringLiteral("Sample \u00E9.")), "run_command",
                       QStringLiteral("nothing but the PDF is left behind: %1").arg(name));
    HeldHandle settings(mHost);
    if (mHost.Call(&Table::create_command, int32_t(HOPBOX_EXPORT_DOCUMENT), &settings.value) == HOPBOX_OK)
        CheckSettings(settings.value);
}

void CommandChecks::CheckPackage(Handle document)
{
    TextTaker file;
    mHost.Call(&Table::get_document_file, document, file.Get());
    const QByteArray before = Read(file.GetTexts().value(0));
    HeldHandle cancelled(mHost);
    const QString place = ReserveFolder(mFolder + QStringLiteral("/Cancelled package"));
    cancelled.value = MakePackage(document, place);
    CheckCancel(cancelled.value, place);

    const QString folder = ReserveFolder(mFolder + QStringLiteral("/Packages"));
    HeldHandle command(mHost);
    command.value = MakePackage(document, folder);
    if (command.value == 0)
        return;
    mReport.Expect(mHost.Call(&Table::run_command, command.value) == HOPBOX_OK && !List(folder).isEmpty(),
                   "run_command", QStringLiteral("a package's folder is filled"));
    const int count = List(folder).size();
    mReport.Expect(
        mHost.Call(&Table::write_report, command.value) == HOPBOX_OK && List(folder).size() > count,
        "write_report", QStringLiteral("a report in the package's folder"));
    mReport.Expect(Read(file.GetTexts().value(0)) == before, "run_command",
                   QStringLiteral("the document's own file is as it was"));
}
