#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/DeliveryOutput.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
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

// The location for the ticket; empty when there is no such file or folder.
QString GetJobLocation(const QString& path)
{
    if (IsFileURL(path))
        return path;
    const QFileInfo file(path);
    if (path.isEmpty() || !file.exists())
        return {};
    const QString absolute = QDir::cleanPath(file.absoluteFilePath());
    // A ticket's text can't carry a line break, the URL of the path can.
    if (absolute.contains(QLatin1Char('\n')) || absolute.contains(QLatin1Char('\r')))
        return QString::fromLatin1(QUrl::fromLocalFile(absolute).toEncoded());
    return QDir::toNativeSeparators(absolute);
}

int Submit(const QString& printerName, const QString& location, DeliveryOutput::Form form)
{
    HopboxHandOff::Report report;
    const bool isSent = HopboxHandOff::SubmitJob(printerName, location, &report);
    const QString summary = QStringLiteral("No running Hopbox took the job. Start the Hopbox and try again.");
    return DeliveryOutput::Print(report, isSent, summary, form);
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {QStringLiteral("json")});
    if (!arguments.AreValid() || arguments.GetRest().size() != 2)
        return cExitUsage;
    const HopboxRegistry registry;
    DamageNotice::Tell(registry);
    QString key;
    const std::optional<HopboxRecord> record =
        HopboxOutput::FindOrFail(registry, arguments.GetRest().first(), key);
    if (!record)
        return cExitFailed;
    const QString location = GetJobLocation(arguments.GetRest().last());
    if (!location.isEmpty())
        return Submit(record->GetName(key), location,
                      arguments.Has("json") ? DeliveryOutput::Form::Json : DeliveryOutput::Form::Text);
    PrintError(QStringLiteral("There is no file or folder \"%1\".")
                   .arg(HopboxOutput::GetShown(arguments.GetRest().last())));
    return cExitFailed;
}
}  // namespace

const Command cSubmitCommand = {"submit", "submit NAME PATH [--json]", Run};
