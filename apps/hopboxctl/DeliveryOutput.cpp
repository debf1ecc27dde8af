#include "apps/hopboxctl/DeliveryOutput.h"

#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxOutput.h"

#include <QJsonArray>
#include <QJsonObject>

using HopboxHandOff::Delivery;
using HopboxHandOff::Report;

namespace
{
QJsonObject GetJson(const Delivery& delivery)
{
    QJsonObject object = {{QStringLiteral("process"), static_cast<qint64>(delivery.process)},
                          {QStringLiteral("sent"), delivery.isSent}};
    if (!delivery.isSent) {
        object.insert(QStringLiteral("code"), delivery.code);
        object.insert(QStringLiteral("reason"), delivery.reason);
    }
    return object;
}

QJsonObject GetJson(const Report& report)
{
    QJsonArray receivers;
    for (const Delivery& delivery : report.deliveries)
        receivers.append(GetJson(delivery));
    QJsonObject object = {{QStringLiteral("receivers"), receivers}};
    if (!report.reason.isEmpty())
        object.insert(QStringLiteral("reason"), report.reason);
    return object;
}

QStringList GetReasons(const Report& report)
{
    QStringList reasons;
    bool isTold = false;
    for (const Delivery& delivery : report.deliveries) {
        if (delivery.isSent)
            continue;
        isTold = isTold || delivery.reason == report.reason;
        reasons.append(QStringLiteral("Process %1 (error %2): %3")
                           .arg(QString::number(delivery.process), QString::number(delivery.code),
                                HopboxOutput::GetShown(delivery.reason)));
    }
    if (!report.reason.isEmpty() && !isTold)
        reasons.append(HopboxOutput::GetShown(report.reason));
    return reasons;
}
}  // namespace

int DeliveryOutput::Tell(const Report& report, bool isSent, const QString& summary)
{
    SetResult(GetJson(report));
    if (!isSent)
        PrintError(summary);
    for (const QString& reason : GetReasons(report))
        isSent ? PrintWarning(reason) : PrintError(reason);
    return isSent ? cCliDone : cCliFailed;
}
