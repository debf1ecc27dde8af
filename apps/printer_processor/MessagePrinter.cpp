#include "apps/printer_processor/MessagePrinter.h"

#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxMessages.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>

namespace
{
void Fail(QJsonObject& line, const QString& error)
{
    line.insert(QStringLiteral("error"), error);
}

bool PrintLine(const QJsonObject& line)
{
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    const auto size = static_cast<size_t>(text.size());
    return std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}
}  // namespace

bool MessagePrinter::Take(const GPPIPCMessage& message) const
{
    QJsonObject line = {{QStringLiteral("kind"), message.kind},
                        {QStringLiteral("sender"), static_cast<qint64>(message.process)}};
    if (message.kind == HopboxMessage::cSubmitJob)
        DescribeJob(message, line);
    else if (message.kind != HopboxMessage::cNotify)
        line.insert(QStringLiteral("size"), message.payload.size());
    return PrintLine(line);
}

void MessagePrinter::DescribeJob(const GPPIPCMessage& message, QJsonObject& line) const
{
    HopboxJobTicket ticket;
    if (!ticket.FromText(GString::fromUtf8(message.payload))) {
        Fail(line, QStringLiteral("The payload is no job ticket."));
        return;
    }
    for (const auto& value : ticket.GetValues())
        line.insert(value.first, value.second);
    line.insert(QStringLiteral("CopyCount"), ticket.copyCount);
    line.insert(QStringLiteral("valid"), ticket.IsValid());
    if (!ticket.IsValid()) {
        Fail(line, QStringLiteral("The job ticket is not valid."));
        return;
    }
    if (!mInbox)
        return;
    try {
        line.insert(QStringLiteral("saved"), mInbox->Take(ticket.jobPath).GetNativePath());
    } catch (const GException& error) {
        Fail(line, error.GetDescription());
    }
}
