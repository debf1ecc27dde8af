// A library that stands before the C library in a test's child process and makes one of its calls fail. See
// FaultCalls.h; FaultDriver uses it. Only what a program calls through the dynamic linker is seen, which is
// all of the product, of Qt and of the libraries, but not what the C library calls within itself.

#include "tests/support/faults/FaultCalls.h"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#define PRELOADED extern "C"

namespace
{
// What is to be done; read once, when the library is loaded. The variables then go, so that programs that
// this process starts run without faults.
struct Plan
{
    std::string root;
    std::string report;
    std::string pause;
    long number = 0;
    long index = 0;
    std::atomic<long> count{0};
    std::atomic<int> brokenFile{-1};  // no read of it gives anything until it is closed
    std::string lookAt;
    int lookError = 0;
    bool isActive = false;
};

Plan& GetPlan()
{
    static Plan plan;
    return plan;
}

std::string TakeVariable(const char* name)
{
    const char* const value = getenv(name);
    std::string text = value != nullptr ? value : "";
    unsetenv(name);
    return text;
}

void ReadPlan()
{
    Plan& plan = GetPlan();
    plan.root = TakeVariable(cFaultRoot);
    plan.report = TakeVariable(cFaultReport);
    plan.pause = TakeVariable(cFaultPause);
    plan.number = atol(TakeVariable(cFaultNumber).c_str());
    plan.index = atol(TakeVariable(cFaultIndex).c_str());
    plan.lookAt = TakeVariable(cFaultLookAt);
    plan.lookError = atoi(TakeVariable(cFaultLookError).c_str());
    unsetenv("LD_PRELOAD");
    plan.isActive = !plan.root.empty();
}

// Reads the plan when the library is loaded.
struct AtLoading
{
    AtLoading() { ReadPlan(); }
};
const AtLoading cAtLoading;

void Report(const std::string& line)
{
    const int file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, GetPlan().report.c_str(),
                                              O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600));
    syscall(SYS_write, file, line.data(), line.size());
    syscall(SYS_close, file);
}

std::string GetPathOf(int file)
{
    char path[PATH_MAX];
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    const long length = syscall(SYS_readlinkat, AT_FDCWD, link.c_str(), path, sizeof path);
    return length > 0 ? std::string(path, static_cast<size_t>(length)) : std::string();
}

std::string GetPathOf(int folder, const char* name)
{
    if (name == nullptr || *name == '\0')
        return GetPathOf(folder);
    if (*name == '/')
        return name;
    char current[PATH_MAX] = "";
    if (folder != AT_FDCWD)
        return GetPathOf(folder) + '/' + name;
    return syscall(SYS_getcwd, current, sizeof current) > 0 ? std::string(current) + '/' + name : name;
}

bool IsBelowRoot(const std::string& path)
{
    const std::string& root = GetPlan().root;
    return path.compare(0, root.size(), root) == 0 &&
           (path.size() == root.size() || path[root.size()] == '/');
}

const char* GetFaultName(int error)
{
    return error == cShortWrite ? "short write" : error == cBrokenRead ? "EIO" : strerrorname_np(error);
}

void PauseOnce(const char* call, const std::string& path)
{
    Plan& plan = GetPlan();
    if (plan.pause != call)
        return;
    plan.pause = "done";
    Report(path + '\n');
    while (syscall(SYS_faccessat, AT_FDCWD, plan.report.c_str(), F_OK) == 0)
        usleep(1000);
}

// Counts a call. Gives 0 when it is to go on, else the error that it is to give.
int Count(FaultCallID id, const std::string& path)
{
    Plan& plan = GetPlan();
    if (!plan.isActive || (id != FaultCallID::cFork && !IsBelowRoot(path)))
        return 0;
    const FaultCall& call = cFaultCalls[static_cast<int>(id)];
    if (!plan.pause.empty()) {
        PauseOnce(call.name, path);
        return 0;
    }
    const long number = ++plan.count;
    if (plan.number == 0)
        Report(std::string(call.name) + ' ' + path + '\n');
    if (number != plan.number)
        return 0;
    int errors = 0;
    while (errors < cMostFaults && call.errors[errors] != 0)
        ++errors;
    const int error = call.errors[plan.index % errors];
    Report(std::string(call.name) + ' ' + GetFaultName(error) + ' ' + path + '\n');
    return error;
}

// True when the call is to fail; errno is set then.
bool Fails(FaultCallID id, const std::string& path)
{
    const int kept = errno;
    const int error = Count(id, path);
    errno = error > 0 ? error : kept;
    return error > 0;
}

bool FailsOn(FaultCallID id, int file)
{
    return GetPlan().isActive && Fails(id, GetPathOf(file));
}

bool FailsAt(FaultCallID id, int folder, const char* name)
{
    return GetPlan().isActive && Fails(id, GetPathOf(folder, name));
}

// Likewise, for a look at a path that always fails.
bool FailsToLook(const char* path)
{
    const Plan& plan = GetPlan();
    const std::string whole = plan.lookAt.empty() ? std::string() : GetPathOf(AT_FDCWD, path);
    if (plan.lookAt.empty() || !IsBelowRoot(whole) || whole.size() < plan.lookAt.size() ||
        whole.compare(whole.size() - plan.lookAt.size(), std::string::npos, plan.lookAt) != 0)
        return false;
    errno = plan.lookError;
    return true;
}

template <typename Function>
Function FindNext(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// How many bytes of a write are to be written; -1, with errno set, for none.
template <typename Size>
ssize_t LimitWrite(int file, Size count)
{
    const int kept = errno;
    const int error = GetPlan().isActive ? Count(FaultCallID::cWrite, GetPathOf(file)) : 0;
    errno = error > 0 ? error : kept;
    if (error > 0)
        return -1;
    return static_cast<ssize_t>(error == cShortWrite && count > 1 ? count / 2 : count);
}

// How many bytes of a read are to be given; -1, with errno set, for none.
template <typename Size>
ssize_t LimitRead(int file, Size count)
{
    Plan& plan = GetPlan();
    if (!plan.isActive)
        return static_cast<ssize_t>(count);
    const int kept = errno;
    int error = plan.brokenFile == file ? EIO : Count(FaultCallID::cRead, GetPathOf(file));
    if (error == cBrokenRead)
        plan.brokenFile = file;
    errno = error > 0 ? error : kept;
    if (error > 0)
        return -1;
    return static_cast<ssize_t>(error == cBrokenRead && count > 1 ? count / 2 : count);
}
}  // namespace

// The next function of this name.
#define NEXT(name) FindNext<decltype(&::name)>(#name)

#define OPEN_FUNCTION(name)                              \
    PRELOADED int name(const char* path, int flags, ...) \
    {                                                    \
        va_list rest;                                    \
        va_start(rest, flags);                           \
        const mode_t mode = va_arg(rest, mode_t);        \
        va_end(rest);                                    \
        static const auto next = NEXT(name);             \
        if (FailsAt(FaultCallID::cOpen, AT_FDCWD, path)) \
            return -1;                                   \
        return next(path, flags, mode);                  \
    }
OPEN_FUNCTION(open)
OPEN_FUNCTION(open64)

#define OPEN_AT_FUNCTION(name)                                       \
    PRELOADED int name(int folder, const char* path, int flags, ...) \
    {                                                                \
        va_list rest;                                                \
        va_start(rest, flags);                                       \
        const mode_t mode = va_arg(rest, mode_t);                    \
        va_end(rest);                                                \
        static const auto next = NEXT(name);                         \
        if (FailsAt(FaultCallID::cOpen, folder, path))               \
            return -1;                                               \
        return next(folder, path, flags, mode);                      \
    }
OPEN_AT_FUNCTION(openat)
OPEN_AT_FUNCTION(openat64)

// A call whose result is of the type, -1 (or what `failed` says) when it fails.
#define FUNCTION(type, failed, name, parameters, arguments, condition) \
    PRELOADED type name parameters                                     \
    {                                                                  \
        static const auto next = NEXT(name);                           \
        if (condition)                                                 \
            return failed;                                             \
        return next arguments;                                         \
    }

FUNCTION(FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode),
         FailsAt(FaultCallID::cOpen, AT_FDCWD, path))
FUNCTION(FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode),
         FailsAt(FaultCallID::cOpen, AT_FDCWD, path))

#define READ_FUNCTION(name, parameters, arguments)    \
    PRELOADED ssize_t name parameters                 \
    {                                                 \
        static const auto next = NEXT(name);          \
        const ssize_t limit = LimitRead(file, count); \
        if (limit < 0)                                \
            return -1;                                \
        count = static_cast<size_t>(limit);           \
        return next arguments;                        \
    }
READ_FUNCTION(read, (int file, void* bytes, size_t count), (file, bytes, count))
READ_FUNCTION(pread, (int file, void* bytes, size_t count, off_t at), (file, bytes, count, at))
READ_FUNCTION(pread64, (int file, void* bytes, size_t count, off64_t at), (file, bytes, count, at))

FUNCTION(int, -1, fsync, (int file), (file), FailsOn(FaultCallID::cFlush, file))
FUNCTION(int, -1, fdatasync, (int file), (file), FailsOn(FaultCallID::cFlush, file))
FUNCTION(int, -1, rename, (const char* from, const char* to), (from, to),
         FailsAt(FaultCallID::cRename, AT_FDCWD, to))
FUNCTION(int, -1, renameat, (int folder, const char* from, int other, const char* to),
         (folder, from, other, to), FailsAt(FaultCallID::cRename, other, to))
FUNCTION(int, -1, renameat2, (int folder, const char* from, int other, const char* to, unsigned flags),
         (folder, from, other, to, flags), FailsAt(FaultCallID::cRename, other, to))
FUNCTION(int, -1, link, (const char* from, const char* to), (from, to),
         FailsAt(FaultCallID::cLink, AT_FDCWD, to))
FUNCTION(int, -1, linkat, (int folder, const char* from, int other, const char* to, int flags),
         (folder, from, other, to, flags), FailsAt(FaultCallID::cLink, other, to))
FUNCTION(int, -1, symlink, (const char* from, const char* to), (from, to),
         FailsAt(FaultCallID::cLink, AT_FDCWD, to))
FUNCTION(int, -1, unlink, (const char* path), (path), FailsAt(FaultCallID::cUnlink, AT_FDCWD, path))
FUNCTION(int, -1, unlinkat, (int folder, const char* path, int flags), (folder, path, flags),
         FailsAt(FaultCallID::cUnlink, folder, path))
FUNCTION(int, -1, rmdir, (const char* path), (path), FailsAt(FaultCallID::cUnlink, AT_FDCWD, path))
FUNCTION(int, -1, stat, (const char* path, struct stat* status), (path, status),
         FailsAt(FaultCallID::cStat, AT_FDCWD, path))
FUNCTION(int, -1, stat64, (const char* path, struct stat64* status), (path, status),
         FailsAt(FaultCallID::cStat, AT_FDCWD, path))
FUNCTION(int, -1, lstat, (const char* path, struct stat* status), (path, status),
         FailsToLook(path) || FailsAt(FaultCallID::cStat, AT_FDCWD, path))
FUNCTION(int, -1, lstat64, (const char* path, struct stat64* status), (path, status),
         FailsToLook(path) || FailsAt(FaultCallID::cStat, AT_FDCWD, path))
FUNCTION(int, -1, fstat, (int file, struct stat* status), (file, status), FailsOn(FaultCallID::cStat, file))
FUNCTION(int, -1, fstat64, (int file, struct stat64* status), (file, status),
         FailsOn(FaultCallID::cStat, file))
FUNCTION(int, -1, fstatat, (int folder, const char* path, struct stat* status, int flags),
         (folder, path, status, flags), FailsAt(FaultCallID::cStat, folder, path))
FUNCTION(int, -1, statx, (int folder, const char* path, int flags, unsigned mask, struct statx* status),
         (folder, path, flags, mask, status), FailsAt(FaultCallID::cStat, folder, path))
FUNCTION(int, -1, faccessat, (int folder, const char* path, int mode, int flags), (folder, path, mode, flags),
         FailsAt(FaultCallID::cAccess, folder, path))
FUNCTION(int, -1, access, (const char* path, int mode), (path, mode),
         FailsAt(FaultCallID::cAccess, AT_FDCWD, path))
FUNCTION(int, -1, statvfs, (const char* path, struct statvfs* volume), (path, volume),
         FailsAt(FaultCallID::cVolume, AT_FDCWD, path))
FUNCTION(int, -1, statvfs64, (const char* path, struct statvfs64* volume), (path, volume),
         FailsAt(FaultCallID::cVolume, AT_FDCWD, path))
FUNCTION(int, -1, futimens, (int file, const struct timespec* times), (file, times),
         FailsOn(FaultCallID::cTimes, file))
FUNCTION(int, -1, utimensat, (int folder, const char* path, const struct timespec* times, int flags),
         (folder, path, times, flags), FailsAt(FaultCallID::cTimes, folder, path))
FUNCTION(int, -1, flock, (int file, int operation), (file, operation), FailsOn(FaultCallID::cLock, file))
FUNCTION(int, -1, truncate64, (const char* path, off64_t size), (path, size),
         FailsAt(FaultCallID::cResize, AT_FDCWD, path))
FUNCTION(ssize_t, -1, readlink, (const char* path, char* text, size_t size), (path, text, size),
         FailsAt(FaultCallID::cReadLink, AT_FDCWD, path))
FUNCTION(int, -1, mkdir, (const char* path, mode_t mode), (path, mode),
         FailsAt(FaultCallID::cMakeFolder, AT_FDCWD, path))
FUNCTION(int, -1, mkdirat, (int folder, const char* path, mode_t mode), (folder, path, mode),
         FailsAt(FaultCallID::cMakeFolder, folder, path))
FUNCTION(int, -1, ftruncate, (int file, off_t size), (file, size), FailsOn(FaultCallID::cResize, file))
FUNCTION(int, -1, ftruncate64, (int file, off64_t size), (file, size), FailsOn(FaultCallID::cResize, file))
FUNCTION(int, -1, fallocate, (int file, int mode, off_t at, off_t size), (file, mode, at, size),
         FailsOn(FaultCallID::cResize, file))
FUNCTION(int, -1, fallocate64, (int file, int mode, off64_t at, off64_t size), (file, mode, at, size),
         FailsOn(FaultCallID::cResize, file))
FUNCTION(int, errno, posix_fallocate, (int file, off_t at, off_t size), (file, at, size),
         FailsOn(FaultCallID::cResize, file))
FUNCTION(int, errno, posix_fallocate64, (int file, off64_t at, off64_t size), (file, at, size),
         FailsOn(FaultCallID::cResize, file))
FUNCTION(void*, MAP_FAILED, mmap, (void* at, size_t size, int rights, int flags, int file, off_t from),
         (at, size, rights, flags, file, from), file >= 0 && FailsOn(FaultCallID::cMap, file))
FUNCTION(void*, MAP_FAILED, mmap64, (void* at, size_t size, int rights, int flags, int file, off64_t from),
         (at, size, rights, flags, file, from), file >= 0 && FailsOn(FaultCallID::cMap, file))
FUNCTION(DIR*, nullptr, opendir, (const char* path), (path), FailsAt(FaultCallID::cOpen, AT_FDCWD, path))
FUNCTION(struct dirent*, nullptr, readdir, (DIR * folder), (folder),
         FailsOn(FaultCallID::cReadFolder, dirfd(folder)))
FUNCTION(struct dirent64*, nullptr, readdir64, (DIR * folder), (folder),
         FailsOn(FaultCallID::cReadFolder, dirfd(folder)))
FUNCTION(int, -1, chmod, (const char* path, mode_t mode), (path, mode),
         FailsAt(FaultCallID::cRights, AT_FDCWD, path))
FUNCTION(int, -1, fchmod, (int file, mode_t mode), (file, mode), FailsOn(FaultCallID::cRights, file))
FUNCTION(int, -1, fchown, (int file, uid_t user, gid_t group), (file, user, group),
         FailsOn(FaultCallID::cRights, file))
FUNCTION(pid_t, -1, fork, (), (), Fails(FaultCallID::cFork, std::string()))

PRELOADED ssize_t write(int file, const void* bytes, size_t count)
{
    static const auto next = NEXT(write);
    const ssize_t limit = LimitWrite(file, count);
    return limit < 0 ? -1 : next(file, bytes, static_cast<size_t>(limit));
}

PRELOADED ssize_t pwrite(int file, const void* bytes, size_t count, off_t at)
{
    static const auto next = NEXT(pwrite);
    const ssize_t limit = LimitWrite(file, count);
    return limit < 0 ? -1 : next(file, bytes, static_cast<size_t>(limit), at);
}

PRELOADED ssize_t pwrite64(int file, const void* bytes, size_t count, off64_t at)
{
    static const auto next = NEXT(pwrite64);
    const ssize_t limit = LimitWrite(file, count);
    return limit < 0 ? -1 : next(file, bytes, static_cast<size_t>(limit), at);
}

// Of the commands only those that lock can fail here.
PRELOADED int fcntl(int file, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    static const auto next = FindNext<int (*)(int, int, void*)>("fcntl64");
    const bool isLock =
        command == F_OFD_SETLK || command == F_OFD_SETLKW || command == F_SETLK || command == F_SETLKW;
    if (isLock && FailsOn(FaultCallID::cLock, file))
        return -1;
    return next(file, command, argument);
}

PRELOADED int fcntl64(int file, int command, ...)
{
    va_list rest;
    va_start(rest, command);
    void* const argument = va_arg(rest, void*);
    va_end(rest);
    return fcntl(file, command, argument);
}

// The file is closed all the same, as the system does it.
PRELOADED int close(int file)
{
    static const auto next = NEXT(close);
    const bool isFailed = FailsOn(FaultCallID::cClose, file);
    int broken = file;
    GetPlan().brokenFile.compare_exchange_strong(broken, -1);
    const int error = errno;
    const int result = next(file);
    if (isFailed)
        errno = error;
    return isFailed ? -1 : result;
}
