#pragma once

#include <QJsonObject>
#include <QProcess>

// The path of a program of this build. Needs a QCoreApplication.
QString GetProgram(const char* name);

// A receiving process that takes so many jobs up and ends.
class Receiver
{
public:
    Receiver(const QString& inbox, int count);

    // What it says of each job, when it has ended.
    QList<QJsonObject> GetJobs();

private:
    QProcess mProcess;
};
