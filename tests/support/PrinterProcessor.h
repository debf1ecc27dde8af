#pragma once

#include "tests/support/Sandbox.h"
#include "tests/support/Texts.h"

#include <QJsonObject>
#include <QProcess>
#include <QStringList>

// The real receiving process, running and registered below the root of a sandbox. Killed at the end of its
// life.
class PrinterProcessor
{
public:
    enum class Output
    {
        Read,
        Lost  // its lines go to a process that has ended
    };

    PrinterProcessor(const Sandbox& sandbox, const QStringList& arguments, Output output = Output::Read);
    ~PrinterProcessor();
    PrinterProcessor(const PrinterProcessor&) = delete;
    PrinterProcessor& operator=(const PrinterProcessor&) = delete;

    // What its next line says; empty when it ends without one, or says nothing for 30 s.
    QJsonObject ReadLine();

    void Kill();

    // Its exit status; -1 when it crashed or is still running after 30 s.
    int WaitForExit();

    uint32_t GetProcessID() const { return mProcessID; }

private:
    QProcess mReader;  // of lost output
    QProcess mProcess;
    uint32_t mProcessID = 0;
};
