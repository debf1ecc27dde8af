#pragma once

#include "tests/support/FailureNote.h"
#include "tests/support/Test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// Runs the real hopboxctl in a sandbox of its own, and keeps what it says with LF at the ends of lines.
// Beside each failure of a test stands what the last command said.
class CommandTest : public testing::Test
{
protected:
    QString GetPath(const char* name) const { return mSandbox.GetPath(QString::fromUtf8(name)); }

    // Gives the exit status; -1 after a crash.
    int Run(const QStringList& arguments)
    {
        QProcess process;
        process.setWorkingDirectory(mSandbox.GetPath());
        process.start(GetProgramPath("hopboxctl"), arguments);
        EXPECT_TRUE(process.waitForFinished()) << process.errorString().toStdString();
        mOutput = process.readAllStandardOutput().replace("\r\n", "\n");
        mError = process.readAllStandardError().replace("\r\n", "\n");
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    // Makes a Hopbox with job options and what else is given.
    int Create(const QString& name, const QStringList& more = {})
    {
        WriteFile(GetPath("a.joboptions"), "<< /A 1 >> setdistillerparams");
        return Run(QStringList{"create"_q, name, "--job-options"_q, "a.joboptions"_q} + more);
    }

    // What the last command answered with --json.
    QJsonObject GetAnswer() const { return QJsonDocument::fromJson(mOutput).object(); }
    QJsonValue GetResult() const { return GetAnswer().value("result"_q); }

    Sandbox mSandbox;
    QByteArray mOutput;
    QByteArray mError;
    const FailureNote mNote{
        [this] { return "Output: " + mOutput.toStdString() + "\nError: " + mError.toStdString(); }};
};
