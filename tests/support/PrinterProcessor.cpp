#include "tests/support/PrinterProcessor.h"

#include "tests/support/TestFiles.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

static const char* const cProgram = "PrinterProcessorWin.exe";

PrinterProcessor::PrinterProcessor(const Sandbox& sandbox, const QStringList& arguments, Output output)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("MORVANE_ROOT"_q, sandbox.GetPath());
    mProcess.setProcessEnvironment(environment);
    QProcess* reader = output == Output::Lost ? new QProcess(&mProcess) : nullptr;
    if (reader != nullptr)
        mProcess.setStandardOutputProcess(reader);
    mProcess.start(GetProgramPath(cProgram), arguments);
    if (reader != nullptr) {
        reader->start(GetProgramPath(cProgram), {"wrong call"_q});
        EXPECT_TRUE(reader->waitForFinished());
    }
    QByteArray line;
    QByteArray before;
    do {  // the command of a job that a start before has left may say something first
        before += line + '\n';
        line = ReadErrorLine();
    } while (!line.isEmpty() && !line.contains("ready as process "));
    EXPECT_TRUE(line.contains("ready as process ")) << before.toStdString();
    mProcessID = line.mid(line.lastIndexOf(' ') + 1).toUInt();
}

QByteArray PrinterProcessor::ReadErrorLine()
{
    mProcess.setReadChannel(QProcess::StandardError);
    const QByteArray line = ChildProcess::ReadLine();
    mProcess.setReadChannel(QProcess::StandardOutput);
    return line;
}

QJsonObject PrinterProcessor::ReadLine()
{
    return QJsonDocument::fromJson(ChildProcess::ReadLine()).object();
}
