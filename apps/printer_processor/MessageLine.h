#pragma once

#include "foundation/core/GString.h"
#include "hopbox/HopboxJobTicket.h"

#include <QJsonObject>

struct GPPIPCMessage;

// What one message of the Printer Processor channel holds, as an object of JSON.
//
// It has "kind" and "sender" (a process identifier); for a submitted job the ticket's values under their
// names in the ticket, and "valid"; for a message of another kind than the two that are known "size", the
// bytes of its payload. "error" says what is wrong with the message or its job.
namespace MessageLine
{
QJsonObject Describe(const GPPIPCMessage& message);

// The same for a submitted job of these bytes. `ticket` becomes the job's ticket; false when it is none that
// is valid.
[[nodiscard]] bool DescribeJob(uint32_t sender, const GBuffer& payload, QJsonObject* line,
                               HopboxJobTicket* ticket);

void SetError(QJsonObject* line, const GString& error);

// Prints an object in a line of standard output, at once. False when it could not be written.
[[nodiscard]] bool Print(const QJsonObject& line);
}  // namespace MessageLine
