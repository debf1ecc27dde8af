#pragma once

#include "tests/support/Test.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

// Runs the real hopboxctl in a sandbox of its own, and keeps what it says with LF at the ends of lines.
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

    // What the last command answered with --json.
    QJsonObject GetAnswer() const { return QJsonDocument::fromJson(mOutput).object(); }
    QJsonValue GetResult() const { return GetAnswer().value("result"_q); }

    Sandbox mSandbox;
    QByteArray mOutput;
    QByteArray mError;
};
