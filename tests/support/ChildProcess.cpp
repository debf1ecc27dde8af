#include "tests/support/ChildProcess.h"

#include "tests/support/ChildRoles.h"

#include <QCoreApplication>
#include <QMap>

#include <gtest/gtest.h>

#include <cstdio>

static QMap<QString, ChildRole>& GetRoles()
{
    static QMap<QString, ChildRole> roles;
    return roles;
}

static constexpr int cLineTimeout = 30000;  // milliseconds
static constexpr int cExitTimeout = 60000;

ChildRoleRegistration::ChildRoleRegistration(const char* name, ChildRole role)
{
    GetRoles().insert(QString::fromLatin1(name), role);
}

int RunChildRole(const QString& name, const QStringList& arguments)
{
    const ChildRole role = GetRoles().value(name, nullptr);
    if (role == nullptr) {
        std::fprintf(stderr, "No child role '%s' in this test program.\n", name.toUtf8().constData());
        return 2;
    }
    return role(arguments);
}

int RunTests(int argc, char** argv)
{
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() >= 3 && arguments.at(1) == QLatin1String("--child"))
        return RunChildRole(arguments.at(2), arguments.mid(3));
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

void SayToParent(const QByteArray& line)
{
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

QByteArray HearFromParent()
{
    QByteArray line;
    for (int character = std::fgetc(stdin); character != EOF && character != '\n';
         character = std::fgetc(stdin))
        line.append(static_cast<char>(character));
    return line.trimmed();
}

ChildProcess::ChildProcess(const QString& role, const QStringList& arguments)
{
    mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    mProcess.start(QCoreApplication::applicationFilePath(),
                   QStringList{QStringLiteral("--child"), role} + arguments);
    if (!mProcess.waitForStarted(cLineTimeout))
        ADD_FAILURE() << "The child process could not be started: " << mProcess.errorString().toStdString();
    mProcessID = mProcess.processId();
}

ChildProcess::~ChildProcess()
{
    Kill();
}

QByteArray ChildProcess::ReadLine()
{
    while (!mProcess.canReadLine()) {
        if (!mProcess.waitForReadyRead(cLineTimeout))
            return mProcess.readAll().trimmed();
    }
    return mProcess.readLine().trimmed();
}

void ChildProcess::Say(const QByteArray& line)
{
    mProcess.write(line + '\n');
    mProcess.waitForBytesWritten(cLineTimeout);
}

void ChildProcess::Kill()
{
    if (mProcess.state() == QProcess::NotRunning)
        return;
    mProcess.kill();
    mProcess.waitForFinished(cExitTimeout);
}

int ChildProcess::WaitForExit()
{
    mProcess.closeWriteChannel();
    if (mProcess.state() != QProcess::NotRunning && !mProcess.waitForFinished(cExitTimeout))
        return -1;
    return mProcess.exitStatus() == QProcess::NormalExit ? mProcess.exitCode() : -1;
}

bool ChildProcess::IsRunning()
{
    if (mProcess.state() != QProcess::NotRunning)
        mProcess.waitForFinished(0);
    return mProcess.state() != QProcess::NotRunning;
}

std::vector<std::unique_ptr<ChildProcess>> StartChildren(const QString& role, int count,
                                                         const QStringList& arguments)
{
    std::vector<std::unique_ptr<ChildProcess>> children;
    for (int number = 0; number < count; ++number)
        children.push_back(
            std::make_unique<ChildProcess>(role, arguments + QStringList(QString::number(number))));
    return children;
}
