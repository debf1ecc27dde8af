#include "hosts/layout_host/commandline/ExportRun.h"

#include "hosts/layout_host/commandline/StopRequest.h"
#include "hosts/scribus/host/PlugInModule.h"
#include "plugin/host/CActionComponent.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QTimer>

namespace
{
constexpr int cWatchInterval = 50;  // milliseconds

QJsonValue MakeValue(const QString& text)
{
    return text.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(text);
}
}  // namespace

ExportRun::ExportRun(const CommandLine& line, const ScribusSetup& setup)
    : mLine(line), mHost(setup), mDriver(line.choices)
{
    mHost.SetFrontend(this);
    mHost.SetActionManager(&mMenus);
}

ExportRun::~ExportRun()
{
    mHost.SetFrontend(nullptr);
}

QJsonObject ExportRun::Run()
{
    mTime.start();
    const StopRequest stopRequest;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [this] { WatchForEnd(); });
    watch.start(cWatchInterval);
    Export();
    return MakeReport();
}

void ExportRun::Export()
{
    PlugInModule plugIn;
    const GResult loaded = plugIn.Load(PlugInModule::FindFile(), mHost);
    const GResult opened = loaded.Then([this] { return OpenFile(); });
    // What the host would show its user about the file is an alert and no failure of the run.
    if (loaded.HasSucceeded() && !opened.HasSucceeded())
        mAlerts.append({QString(), opened.GetReason()});
    else
        mError = opened.Then([&] { return ChooseEntry(*plugIn.GetActions()); }).GetReason();
}

GResult ExportRun::ChooseEntry(IActionComponent& actions)
{
    if (mLine.isBook && mHost.GetActiveBook()->GetDocuments().isEmpty())
        return GResult::Failure(QStringLiteral("The book \"%1\" is empty.").arg(mLine.files.constFirst()));
    const ActionID action = mLine.isBook ? PlugInID::cBookAction : PlugInID::cDocumentAction;
    mMenus.UpdateStates(actions);
    if (!mMenus.IsEnabled(action))
        return GResult::Failure(QStringLiteral("The menu entry of the plug-in is disabled."));
    mActivity = QStringLiteral("the dialog");
    mDriver.Run([&] { actions.DoAction(nullptr, action, nullptr); });
    const QString& cause = GetCause();
    return mDriver.GetResult().Within(QString(), cause.isEmpty() ? QString() : QLatin1Char(' ') + cause);
}

// An alert says what its code says; the host knows why.
const QString& ExportRun::GetCause() const
{
    return mHost.GetLastFailure().isEmpty() ? mHost.GetRangeFailure() : mHost.GetLastFailure();
}

GResult ExportRun::OpenFile()
{
    mActivity = QStringLiteral("opening the file");
    const QString file = mLine.files.constFirst();
    return mLine.isBook ? mHost.OpenBook(file) : mHost.OpenDocument(file);
}

void ExportRun::WatchForEnd()
{
    if (HasToEnd())
        mDriver.GiveUp(mEndReason);
}

bool ExportRun::HasToEnd()
{
    if (mEndReason.isEmpty() && StopRequest::IsMade())
        mEndReason = QStringLiteral("The program was told to stop.");
    else if (mEndReason.isEmpty() && mTime.elapsed() > mLine.seconds * 1000LL)
        mEndReason = QStringLiteral("The time of %1 s is up: %2.").arg(mLine.seconds).arg(mActivity);
    return !mEndReason.isEmpty();
}

QJsonObject ExportRun::MakeReport() const
{
    const QList<ShownAlert> alerts = mAlerts + mDriver.GetAlerts();
    const QString& error = mEndReason.isEmpty() ? mError : mEndReason;
    QString result = QStringLiteral("success");
    if (!mEndReason.isEmpty() && StopRequest::IsMade())
        result = QStringLiteral("cancelled");
    else if (!error.isEmpty())
        result = QStringLiteral("failed");
    else if (!alerts.isEmpty())
        result = QStringLiteral("alert");
    const ShownAlert alert = alerts.value(0);
    const QString& cause = GetCause().isEmpty() ? alert.text : GetCause();
    const QJsonObject& report = mHost.GetLastReport();
    return {{QStringLiteral("result"), result},
            {QStringLiteral("pdf"), MakeValue(mHost.GetLastPDF())},
            {QStringLiteral("package"), MakeValue(mHost.GetLastPackage())},
            {QStringLiteral("alert"), MakeValue(alert.text)},
            {QStringLiteral("title"), MakeValue(alert.title)},
            {QStringLiteral("error"), MakeValue(error.isEmpty() && !alerts.isEmpty() ? cause : error)},
            {QStringLiteral("settings"), report.value(QLatin1String("settings")).toArray()},
            {QStringLiteral("notes"), report.value(QLatin1String("notes")).toArray()}};
}

void ExportRun::BeginCommand(const QString& title, int)
{
    mActivity = title;
}

void ExportRun::BeginStep(const QString&) {}

bool ExportRun::IsCancelled()
{
    QCoreApplication::processEvents();
    return HasToEnd();
}

void ExportRun::EndCommand()
{
    mActivity = QStringLiteral("the dialog");
}

int32_t ExportRun::ShowAlert(const QString& text, const QString&, const QString&, const QString&,
                             int32_t defaultButton, int32_t)
{
    mAlerts.append({QString(), text});
    return defaultButton;
}

IHostFrontend::Decision ExportRun::AskToGoOn(const QString&, const QStringList&)
{
    return mLine.isForced ? Decision::GoOn : Decision::Refuse;
}

// Nobody is there to be asked.
QString ExportRun::AskForSavePath(const QString& documentName)
{
    mError = QStringLiteral("\"%1\" was never saved.").arg(documentName);
    return {};
}
