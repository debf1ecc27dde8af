#include "foundation/system/GBoundProcess.h"
#include "foundation/system/GLockFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QtGlobal>

#include <dlfcn.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>

// A process that is killed by the very child that it is about to make a program of.
static pid_t toKillAtOnce = 0;
static pid_t toKillLater = 0;

static void Kill(pid_t parent)
{
    if (parent == 0)
        return;
    ::kill(parent, SIGKILL);
    while (getppid() == parent)
        usleep(1000);
}

// Found by Qt before the system's own: by it the child waits for its parent's word.
extern "C" Q_DECL_EXPORT int eventfd_read(int file, eventfd_t* value)
{
    Kill(toKillLater);
    static const auto systemCall =
        reinterpret_cast<int (*)(int, eventfd_t*)>(dlsym(RTLD_NEXT, "eventfd_read"));
    return systemCall(file, value);
}

CHILD_ROLE(LeaveOrphan)
{
    GLockFile lock(GPathName(arguments.at(1)));
    if (lock.TryLock(GLockType::cWrite) != GLockFile::Result::cLocked)
        return 1;
    (arguments.at(0) == "at once"_q ? toKillAtOnce : toKillLater) = getpid();
    pthread_atfork(nullptr, nullptr, [] { Kill(toKillAtOnce); });  // before the one of the code under test
    GBoundProcess process(GBoundProcess::Ending::cByRequest);
    static_cast<void>(process.Start("/bin/sh"_q, {"-c"_q, "echo ran >&"_q + arguments.at(2)}));
    return 2;
}

TEST(BoundProcessRace, WhatIsNoProgramYetEndsWithItsParentAndHoldsNothing)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.lock"_q);
    for (const char* moment : {"at once", "later"}) {
        int ends[2] = {};
        ASSERT_EQ(pipe(ends), 0);
        ChildProcess parent("LeaveOrphan"_q, {QLatin1String(moment), path, QString::number(ends[1])});
        close(ends[1]);
        pollfd end = {ends[0], POLLIN, 0};
        char byte = 0;
        EXPECT_TRUE(poll(&end, 1, 30000) == 1 && read(ends[0], &byte, 1) == 0)
            << "killed " << moment << ": it still waits, or has become the program";
        close(ends[0]);
        EXPECT_EQ(parent.WaitForExit(), -1);
        EXPECT_EQ(GLockFile(GPathName(path)).TryLock(GLockType::cWrite), GLockFile::Result::cLocked);
    }
}
