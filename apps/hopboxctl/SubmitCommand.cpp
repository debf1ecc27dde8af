#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/DeliveryOutput.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GSystemError.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace
{
bool IsFileURL(const QString& text)
{
    return text.startsWith(QLatin1String("file:"), Qt::CaseInsensitive);
}

// The location for the ticket.
QString GetJobLocation(const QString& path)
{
    if (IsFileURL(path))
        return path;
    const QString absolute = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
    // A ticket's text can't carry a line break, the URL of the path can.
    if (absolute.contains(QLatin1Char('\n')) || absolute.contains(QLatin1Char('\r')))
        return QString::fromLatin1(QUrl::fromLocalFile(absolute).toEncoded());
    return QDir::toNativeSeparators(absolute);
}

// Why a job can't be sent; empty when it can.
QString FindFault(const QString& job)
{
    const QString path = IsFileURL(job) ? QUrl(job).toLocalFile() : job;
    if (!path.isEmpty() && QFileInfo::exists(path))
        return {};
    const boost::system::error_code error = GetLastSystemError();
    if (path.isEmpty() || IsFileMissing(path))
        return QStringLiteral("There is no file or folder \"%1\".").arg(job);
    return QStringLiteral("\"%1\" can't be sent: %2").arg(job, GetReasonText(error));
}

int Submit(const QString& printerName, const QString& location)
{
    HopboxHandOff::Report report;
    const bool isSent = HopboxHandOff::SubmitJob(printerName, location, &report);
    return DeliveryOutput::Tell(
        report, isSent, QStringLiteral("No running Hopbox took the job. Start the Hopbox and try again."));
}

int Run(const CliCall& call)
{
    QString key;
    const HopboxRegistry registry;
    const std::optional<HopboxRecord> record = HopboxOutput::FindOrFail(registry, call.GetArgument(0), key);
    DamageNotice::Tell(registry);
    if (!record)
        return cCliFailed;
    const QString fault = FindFault(call.GetArgument(1));
    if (fault.isEmpty())
        return Submit(record->GetName(key), GetJobLocation(call.GetArgument(1)));
    PrintError(HopboxOutput::GetShown(fault));
    return cCliFailed;
}
}  // namespace

const Command cSubmitCommand = {
    {"submit",
     "send a file or folder to a Hopbox",
     "The running receivers take it as if the plug-in had sent it.",
     {{"NAME", "the Hopbox"}, {"PATH", "the file or folder; a file URL too"}},
     {},
     {{"hopboxctl submit Press Report.pdf", "Sends a PDF to the Hopbox \"Press\"."}}},
    Run};
