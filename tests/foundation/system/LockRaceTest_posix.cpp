#include "foundation/system/GLockFile.h"
#include "tests/support/Test.h"

#include <cstdarg>

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

// A file that somebody deletes between the two calls by which a lock is taken: opening it, and locking it.
static QByteArray fileToDelete;

// Found by the code under test before the system's own.
extern "C" int fcntl(int file, int command, ...)
{
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command == F_OFD_SETLK && !fileToDelete.isEmpty()) {
        EXPECT_EQ(unlink(fileToDelete.constData()), 0);
        fileToDelete.clear();
    }
    static const auto systemCall = reinterpret_cast<int (*)(int, int, ...)>(dlsym(RTLD_NEXT, "fcntl"));
    return systemCall(file, command, argument);
}

TEST(LockRace, ALockOnAFileThatWasDeletedMeanwhileIsTakenAgain)
{
    const Sandbox sandbox;
    const GPathName path(sandbox.GetPath("a.lock"_q));
    for (const GLockType type : {GLockType::cRead, GLockType::cWrite}) {
        fileToDelete = QFile::encodeName(path.GetNativePath());
        GLockFile first(path);
        EXPECT_EQ(first.TryLock(type), GLockFile::Result::cLocked);
        ASSERT_TRUE(fileToDelete.isEmpty());
        GLockFile second(path);
        EXPECT_EQ(second.TryLock(GLockType::cWrite), GLockFile::Result::cHeld);
    }
}
