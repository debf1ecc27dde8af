#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

// What a second process of a test does. The test program starts itself again with the role's name; the
// role gets the arguments that the test gave, and its result is the process's exit status.
using ChildRole = int (*)(const QStringList& arguments);

// Registers a role under a name. Use CHILD_ROLE at file scope.
class ChildRoleRegistration
{
public:
    ChildRoleRegistration(const char* name, ChildRole role);
};

// CHILD_ROLE(HoldLock) { … return 0; } defines what the process started as "HoldLock" does; the body sees
// `arguments`.
#define CHILD_ROLE(name)                                                                    \
    static int ChildRole##name(const QStringList& arguments);                               \
    static const ChildRoleRegistration childRoleRegistration##name(#name, ChildRole##name); \
    static int ChildRole##name([[maybe_unused]] const QStringList& arguments)

// Says a line to the test that started this process, at once.
void SayToParent(const QByteArray& line);

// Waits until the test closes this process's standard input or sends a line; gives that line.
QByteArray HearFromParent();

// A running second process of the test program. Killed when it goes out of scope.
class ChildProcess
{
public:
    // Starts the role. Fails the test when the process can't be started.
    ChildProcess(const QString& role, const QStringList& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    // The next line that the child said, without its end of line; empty when it ended or 30 s passed.
    QByteArray ReadLine();

    // Sends a line to the child.
    void Say(const QByteArray& line);

    // Ends the child at once, with no chance to clean up (SIGKILL, TerminateProcess), and waits for its end.
    void Kill();

    // Waits for the child's own end. Gives its exit status, or -1 when it crashed or 60 s passed.
    int WaitForExit();

    bool IsRunning();

    // Also when the child has ended.
    qint64 GetProcessID() const { return mProcessID; }

protected:
    // For other programs.
    ChildProcess() = default;

    QProcess mProcess;
    qint64 mProcessID = 0;
};

// So many children in a role at once, each called with the arguments and, behind them, its number from 0 on.
std::vector<std::unique_ptr<ChildProcess>> StartChildren(const QString& role, int count,
                                                         const QStringList& arguments = {});
