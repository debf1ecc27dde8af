#include "apps/host_check/ExportChecks.h"

#include "apps/host_check/ApplicationChecks.h"
#include "apps/host_check/CheckReport.h"
#include "apps/host_check/FrontDocument.h"
#include "apps/host_check/WatchedHost.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/boundary/BoundaryText.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

namespace
{
using Boundary::PassedText;
using Boundary::TextSink;

constexpr int cPatience = 60000;  // milliseconds
const QString cHopbox = QStringLiteral("Check");

// What exports have made, and what is on its way.
QStringList ListResults()
{
    QStringList found;
    QDirIterator items(GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetNativePath(),
                       QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden, QDirIterator::Subdirectories);
    while (items.hasNext())
        found.append(items.next());
    found.sort();
    return found;
}

QString GetReason(const TextSink& sink)
{
    return sink.GetTexts().value(0);
}
}  // namespace

ExportChecks::ExportChecks(const hopbox_plugin_table& plugIn, const hopbox_adaptor& adaptor,
                           const WatchedHost& host, const QString& receiver, CheckReport& report)
    : mPlugIn(plugIn), mAdaptor(adaptor), mHost(host), mReceiver(receiver), mReport(report)
{
}

bool ExportChecks::CanExport(const hopbox_plugin_table& plugIn)
{
    return plugIn.load != nullptr && plugIn.open_actions != nullptr && plugIn.startup != nullptr &&
           plugIn.shutdown != nullptr && plugIn.unload != nullptr && plugIn.get_action_state != nullptr &&
           plugIn.export_to != nullptr;
}

bool ExportChecks::MakeHopbox(const QString& jobOptions)
{
    const GPathName folder = HopboxRegistry::GetSettingsFolder().GetChild(cHopbox);
    GFileSystemBase::CreateFolder(folder);
    HopboxProject project(folder.GetChild(QStringLiteral("Project.hopbox")));
    const GResult created = project.Create(GPathName(jobOptions), GPrefMemoryModule());
    if (!created.HasSucceeded()) {
        CliConsole::PrintError(created.GetReason());
        return false;
    }
    HopboxRegistryEntry entry;
    entry.contextFilePath = project.GetPathName();
    entry.isPlugin = true;
    return HopboxRegistry().AddEntry(cHopbox, entry);
}

bool ExportChecks::StartReceiver(QProcess& process)
{
    const GPathName inbox = GFileSystemBase::GetRoot().GetChild(QStringLiteral("Inbox"));
    process.start(mReceiver, {QStringLiteral("--inbox"), inbox.GetNativePath()});
    process.setReadChannel(QProcess::StandardError);
    while (process.waitForReadyRead(cPatience))
        while (process.canReadLine())
            if (process.readLine().contains("ready as process"))
                return true;
    return false;
}

bool ExportChecks::IsReceived(QProcess& process, bool isFolder)
{
    process.setReadChannel(QProcess::StandardOutput);
    while (!process.canReadLine())
        if (!process.waitForReadyRead(cPatience))
            return false;
    const QJsonObject job = QJsonDocument::fromJson(process.readLine()).object();
    const QString saved = job.value(QStringLiteral("saved")).toString();
    QFile pdf(saved);
    return isFolder ? !QDir(saved).isEmpty() : pdf.open(QIODevice::ReadOnly) && pdf.read(5) == "%PDF-";
}

void ExportChecks::Run(void (ExportChecks::*exports)())
{
    const TextSink reason;
    const bool isLoaded = mPlugIn.load(&mHost.GetTable(), mHost.GetHost(), reason) == HOPBOX_OK;
    const bool isOpen = isLoaded && mPlugIn.open_actions(reason) == HOPBOX_OK;
    mReport.Expect(isOpen, "load", QStringLiteral("the plug-in takes the table: %1").arg(GetReason(reason)));
    if (isOpen) {
        mPlugIn.startup();
        ApplicationChecks(mAdaptor, mHost, mReport).CheckStarted();
        (this->*exports)();
        mPlugIn.shutdown();
    }
    mReport.Expect(mPlugIn.unload() == HOPBOX_OK, "load", QStringLiteral("the plug-in can be unloaded"));
}

void ExportChecks::ExportOnce()
{
    Export(HOPBOX_ACTION_DOCUMENT, false);
}

void ExportChecks::ExportAll()
{
    int32_t isOn = 0;
    mPlugIn.get_action_state(HOPBOX_ACTION_DOCUMENT, &isOn, nullptr, nullptr);
    mReport.Expect(isOn == 1, "get_front_document", QStringLiteral("the menu entry is on"));
    Export(HOPBOX_ACTION_DOCUMENT, false);
    if (mHost.GetTable().write_report != nullptr)
        Export(HOPBOX_ACTION_DOCUMENT, true);
    ExportNothing();
    ExportCancelled(HOPBOX_ACTION_DOCUMENT);
    isOn = 0;
    mPlugIn.get_action_state(HOPBOX_ACTION_BOOK, &isOn, nullptr, nullptr);
    if (isOn != 0) {
        Export(HOPBOX_ACTION_BOOK, false);
        ExportCancelled(HOPBOX_ACTION_BOOK);
        if (mHost.Makes(HOPBOX_PACKAGE_BOOK))
            Export(HOPBOX_ACTION_BOOK, true);
    }
    ExportUnsaved();
}

void ExportChecks::Export(hopbox_action action, bool hasPackage)
{
    const char* const operation = action == HOPBOX_ACTION_BOOK ? "get_active_book" : "run_command";
    const QString name =
        QStringLiteral("an export of the %1%2")
            .arg(action == HOPBOX_ACTION_BOOK ? QStringLiteral("book") : QStringLiteral("document"),
                 hasPackage ? QStringLiteral(" with a package") : QString());
    QProcess receiver;
    const PassedText hopbox(cHopbox);
    const TextSink reason;
    mReport.Expect(StartReceiver(receiver), operation, QStringLiteral("the receiving process starts"));
    const int32_t result = mPlugIn.export_to(action, hopbox, nullptr, hasPackage, reason);
    mReport.Expect(result == HOPBOX_OK, operation, QStringLiteral("%1: %2").arg(name, GetReason(reason)));
    if (result == HOPBOX_OK) {
        mReport.Expect(IsReceived(receiver, false), operation, name + QStringLiteral(" reaches its Hopbox"));
        if (hasPackage)
            mReport.Expect(IsReceived(receiver, true), operation,
                           name + QStringLiteral(" reaches its Hopbox whole"));
    }
    receiver.kill();
    receiver.waitForFinished(cPatience);
}

void ExportChecks::ExportNothing()
{
    const PassedText hopbox(cHopbox);
    const PassedText pages(QStringLiteral("99999"));
    const TextSink reason;
    mReport.Expect(mPlugIn.export_to(HOPBOX_ACTION_DOCUMENT, hopbox, pages, 0, reason) == HOPBOX_FAILED &&
                       !GetReason(reason).isEmpty(),
                   "get_pages_of_range", QStringLiteral("an export of a page that is not there fails"));
}

void ExportChecks::ExportCancelled(hopbox_action action)
{
    if (mAdaptor.cancel_next == nullptr)
        return;
    const PassedText hopbox(cHopbox);
    const QStringList before = ListResults();
    mAdaptor.cancel_next(mAdaptor.host);
    mReport.Expect(mPlugIn.export_to(action, hopbox, nullptr, 0, nullptr) == HOPBOX_CANCELLED, "run_command",
                   QStringLiteral("an export that the user cancels is cancelled"));
    mReport.Expect(ListResults() == before, "run_command",
                   QStringLiteral("an export that the user cancels leaves nothing"));
}

// The plug-in saves what is not saved, and does not export what can't be saved. What was saved stays in
// front.
void ExportChecks::ExportUnsaved()
{
    if (mAdaptor.open_unsaved == nullptr)
        return;
    const PassedText hopbox(cHopbox);
    const QString root = GFileSystemBase::GetRoot().GetNativePath();
    const QString ending = FrontDocument::GetEnding(mHost);
    const TextSink reason;
    FrontDocument::OpenUnsaved(mAdaptor, root + QStringLiteral("/Check.joboptions"), ending);
    mReport.Expect(mPlugIn.export_to(HOPBOX_ACTION_DOCUMENT, hopbox, nullptr, 0, reason) == HOPBOX_FAILED &&
                       !GetReason(reason).isEmpty(),
                   "save_document", QStringLiteral("an export of what can't be saved fails"));
    const QString path = FrontDocument::OpenUnsaved(mAdaptor, root, ending);
    Export(HOPBOX_ACTION_DOCUMENT, false);
    mReport.Expect(QFile::exists(path), "save_document", QStringLiteral("an export saves what is not saved"));
}
