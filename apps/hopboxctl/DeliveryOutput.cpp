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

void PrintAsJson(const Report& report, bool isSent)
{
    QJsonArray receivers;
    for (const Delivery& delivery : report.deliveries)
        receivers.append(GetJson(delivery));
    QJsonObject object = {{QStringLiteral("sent"), isSent}, {QStringLiteral("receivers"), receivers}};
    if (!report.reason.isEmpty())
        object.insert(QStringLiteral("reason"), report.reason);
    HopboxOutput::PrintJson(object);
}

void PrintAsText(const Report& report)
{
    bool isTold = false;
    for (const Delivery& delivery : report.deliveries) {
        if (delivery.isSent)
            continue;
        isTold = isTold || delivery.reason == report.reason;
        PrintError(QStringLiteral("Process %1 (error %2): %3")
                       .arg(QString::number(delivery.process), QString::number(delivery.code),
                            HopboxOutput::GetShown(delivery.reason)));
    }
    if (!report.reason.isEmpty() && !isTold)
        PrintError(HopboxOutput::GetShown(report.reason));
}
}  // namespace

int DeliveryOutput::Print(const Report& report, bool isSent, const QString& summary, Form form)
{
    if (!isSent)
        PrintError(summary);
    if (form == Form::Json)
        PrintAsJson(report, isSent);
    else
        PrintAsText(report);
    return isSent ? cExitDone : cExitFailed;
}
