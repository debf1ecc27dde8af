#include "apps/printer_processor/MessageLine.h"

#include "foundation/ipc/GPPIPCMessage.h"
#include "hopbox/HopboxMessages.h"

#include <QJsonDocument>

#include <cstdio>

static QJsonObject Begin(int32_t kind, uint32_t sender)
{
    return {{QStringLiteral("kind"), kind}, {QStringLiteral("sender"), static_cast<qint64>(sender)}};
}

QJsonObject MessageLine::Describe(const GPPIPCMessage& message)
{
    QJsonObject line;
    HopboxJobTicket ticket;
    if (message.kind == HopboxMessage::cSubmitJob) {
        // The line itself says what is wrong.
        static_cast<void>(DescribeJob(message.process, message.payload, &line, &ticket));
        return line;
    }
    line = Begin(message.kind, message.process);
    if (message.kind != HopboxMessage::cNotify)
        line.insert(QStringLiteral("size"), message.payload.size());
    return line;
}

bool MessageLine::DescribeJob(uint32_t sender, const GBuffer& payload, QJsonObject* line,
                              HopboxJobTicket* ticket)
{
    *line = Begin(HopboxMessage::cSubmitJob, sender);
    if (!ticket->FromText(GString::fromUtf8(payload))) {
        SetError(line, QStringLiteral("The payload is no job ticket."));
        return false;
    }
    for (const auto& value : ticket->GetValues())
        line->insert(value.first, value.second);
    line->insert(QStringLiteral("CopyCount"), ticket->copyCount);
    line->insert(QStringLiteral("valid"), ticket->IsValid());
    if (!ticket->IsValid())
        SetError(line, QStringLiteral("The job ticket is not valid."));
    return ticket->IsValid();
}

void MessageLine::SetError(QJsonObject* line, const GString& error)
{
    line->insert(QStringLiteral("error"), error);
}

bool MessageLine::Print(const QJsonObject& line)
{
    const QByteArray text = QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n';
    const auto size = static_cast<size_t>(text.size());
    return std::fwrite(text.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0;
}
