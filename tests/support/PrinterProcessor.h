#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/Sandbox.h"
#include "tests/support/Texts.h"

#include <QJsonObject>

// The real receiving process, running and registered below the root of a sandbox. Killed at the end of its
// life.
class PrinterProcessor : public ChildProcess
{
public:
    enum class Output
    {
        Read,
        Lost  // its lines go to a process that has ended
    };

    PrinterProcessor(const Sandbox& sandbox, const QStringList& arguments, Output output = Output::Read);

    // What its next line says; empty when it ends without one, or says nothing for 30 s.
    QJsonObject ReadLine();

    // The next line that it says on standard error, likewise.
    QByteArray ReadErrorLine();

    uint32_t GetProcessID() const { return static_cast<uint32_t>(mProcessID); }
};
