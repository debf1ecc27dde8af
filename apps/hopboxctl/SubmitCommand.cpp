#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "hopbox/HopboxHandOff.h"
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

int Submit(const QString& printerName, const QString& location)
{
    if (HopboxHandOff::SubmitJob(printerName, location))
        return cExitDone;
    PrintError(QStringLiteral("No running Hopbox took the job. Start the Hopbox and try again."));
    return cExitFailed;
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {});
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
        return Submit(record->GetName(key), location);
    PrintError(QStringLiteral("There is no file or folder \"%1\".")
                   .arg(HopboxOutput::GetShown(arguments.GetRest().last())));
    return cExitFailed;
}
}  // namespace

const Command cSubmitCommand = {"submit", "submit NAME PATH", Run};
