#include "Receiver.h"

#include <QCoreApplication>
#include <QJsonDocument>

#include <gtest/gtest.h>

QString GetProgram(const char* name)
{
    return QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/") + QString::fromLatin1(name);
}

Receiver::Receiver(const QString& inbox, int count)
{
    mProcess.start(GetProgram("PrinterProcessorWin.exe"),
                   {QStringLiteral("--inbox"), inbox, QStringLiteral("--count"), QString::number(count),
                    QStringLiteral("--timeout"), QStringLiteral("60")});
    mProcess.setReadChannel(QProcess::StandardError);
    while (!mProcess.canReadLine() && mProcess.waitForReadyRead())
        ;
    EXPECT_TRUE(mProcess.readLine().contains("ready"));
    mProcess.setReadChannel(QProcess::StandardOutput);
}

QList<QJsonObject> Receiver::GetJobs()
{
    // An event loop of the test may have seen its end already.
    EXPECT_TRUE(mProcess.state() == QProcess::NotRunning || mProcess.waitForFinished(60000));
    QList<QJsonObject> jobs;
    for (const QByteArray& line : mProcess.readAll().trimmed().split('\n'))
        jobs.append(QJsonDocument::fromJson(line).object());
    return jobs;
}
