#include "tests/support/PrinterProcessor.h"

#include "tests/support/TestFiles.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

static constexpr int cPatience = 30000;  // milliseconds

static const char* const cProgram = "PrinterProcessorWin.exe";

// The next line of the current read channel.
static QByteArray ReadRawLine(QProcess& process)
{
    while (!process.canReadLine()) {
        if (!process.waitForReadyRead(cPatience))
            return {};
    }
    return process.readLine().trimmed();
}

PrinterProcessor::PrinterProcessor(const Sandbox& sandbox, const QStringList& arguments, Output output)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MORVANE_ROOT"_q, sandbox.GetPath());
    mProcess.setProcessEnvironment(environment);
    if (output == Output::Lost)
        mProcess.setStandardOutputProcess(&mReader);
    mProcess.start(GetProgramPath(cProgram), arguments);
    if (output == Output::Lost) {
        mReader.start(GetProgramPath(cProgram), {"wrong call"_q});
        EXPECT_TRUE(mReader.waitForFinished(cPatience));
    }
    mProcess.setReadChannel(QProcess::StandardError);
    const QByteArray line = ReadRawLine(mProcess);
    mProcess.setReadChannel(QProcess::StandardOutput);
    EXPECT_TRUE(line.contains("ready as process ")) << line.toStdString();
    mProcessID = line.mid(line.lastIndexOf(' ') + 1).toUInt();
}

PrinterProcessor::~PrinterProcessor()
{
    Kill();
}

QJsonObject PrinterProcessor::ReadLine()
{
    return QJsonDocument::fromJson(ReadRawLine(mProcess)).object();
}

void PrinterProcessor::Kill()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished(cPatience);
}

int PrinterProcessor::WaitForExit()
{
    if (mProcess.state() != QProcess::NotRunning && !mProcess.waitForFinished(cPatience))
        return -1;
    return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
}
