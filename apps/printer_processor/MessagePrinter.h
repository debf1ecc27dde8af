#pragma once

#include "apps/printer_processor/JobInbox.h"

#include <optional>

struct GPPIPCMessage;
class QJsonObject;

// Takes messages of the Printer Processor channel and says what they hold: one line of JSON a message on
// standard output, flushed at once. Jobs are copied to the inbox when there is one.
//
// A line has "kind" and "sender" (a process identifier); for a submitted job the ticket's values under their
// names in the ticket, "valid", and "saved" with the path of the copy; for a message of another kind than the
// two that are known "size", the bytes of its payload. "error" says what is wrong with the message or its
// job.
class MessagePrinter
{
public:
    explicit MessagePrinter(std::optional<JobInbox> inbox) : mInbox(std::move(inbox)) {}

    // False when the line could not be written. Does not raise.
    bool Take(const GPPIPCMessage& message) const;

private:
    void DescribeJob(const GPPIPCMessage& message, QJsonObject& line) const;

    std::optional<JobInbox> mInbox;
};
