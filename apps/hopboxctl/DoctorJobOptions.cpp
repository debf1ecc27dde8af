#include "apps/hopboxctl/Doctor.h"

#include "apps/hopboxctl/ShellWord.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "hopbox/TemporaryFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// What a host makes of job options only the host knows: it is asked, where one lies beside this program.

namespace
{
constexpr int cPatience = 10000;  // milliseconds

// The settings that the host does not honour as they stand, each with its answer.
QStringList AskHost(const QString& host, const QString& jobOptions)
{
    QProcess process;
    process.start(host, {QStringLiteral("--check-job-options"), jobOptions});
    if (!process.waitForFinished(cPatience) || process.exitCode() != 0)
        return {};
    QStringList settings;
    const QJsonObject report = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    for (const QJsonValue& setting : report.value(QLatin1String("settings")).toArray()) {
        const QString answer = setting[QLatin1String("answer")].toString();
        if (answer != QLatin1String("unknown"))
            settings.append(QStringLiteral("%1 (%2)").arg(setting[QLatin1String("key")].toString(), answer));
    }
    return settings;
}
}  // namespace

void Doctor::LookAtJobOptions(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    const QString host = QCoreApplication::applicationDirPath() + QLatin1String("/layout-host");
    if (!QFileInfo(host).isExecutable())
        return;
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        const TemporaryFolder folder;
        GPathName jobOptions;
        if (!record || !record->entry.isPlugin ||
            !HopboxProject(record->entry.contextFilePath)
                 .ExtractJobOptions(folder.GetPathName(), jobOptions)
                 .HasSucceeded())
            continue;
        const QStringList settings = AskHost(host, jobOptions.GetNativePath());
        if (!settings.isEmpty())
            findings.append(
                {"job-options-not-honoured",
                 QStringLiteral("Hopbox \"%1\": layout-host can't do all that the job options ask: %2.")
                     .arg(record->GetName(key), settings.join(QLatin1String(", "))),
                 QStringLiteral("hopboxctl set %1 --job-options FILE, if it matters")
                     .arg(ShellWord::Quote(key)),
                 {},
                 false});
    }
}
