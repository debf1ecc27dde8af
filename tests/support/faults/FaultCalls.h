#pragma once

#include <cerrno>

// What the preloaded library and the driver of faults have in common: the calls of the C library that are
// counted and made to fail, the errors that each can give, and how the driver tells the library what to do.

// A call that ends early with part of its bytes written, in the place of an error number.
constexpr int cShortWrite = -1;

// A read that gives a part, after which every read of the open file gives EIO: a disk with a bad place.
constexpr int cBrokenRead = -2;

constexpr int cMostFaults = 6;

struct FaultCall
{
    const char* name;
    int errors[cMostFaults];  // 0 ends them
};

enum class FaultCallID
{
    cOpen,
    cRead,
    cWrite,
    cFlush,
    cRename,
    cLink,
    cUnlink,
    cStat,
    cReadLink,
    cMakeFolder,
    cLock,
    cMap,
    cResize,
    cReadFolder,
    cRights,
    cAccess,
    cVolume,
    cTimes,
    cClose,
    cFork
};

// In the order of FaultCallID.
constexpr FaultCall cFaultCalls[] = {
    {"open", {EACCES, EIO, EMFILE, ENOSPC, ENAMETOOLONG, EINTR}},
    {"read", {EIO, EINTR, cBrokenRead}},
    {"write", {ENOSPC, EIO, EINTR, cShortWrite}},
    {"flush", {EIO, ENOSPC}},
    {"rename", {EACCES, EIO, ENOSPC, EINVAL}},
    {"link", {EACCES, EIO, ENOSPC}},
    {"unlink", {EACCES, EIO, EBUSY}},
    {"stat", {EACCES, EIO}},
    {"readlink", {EIO, EACCES}},
    {"mkdir", {EACCES, ENOSPC, EIO}},
    {"lock", {ENOLCK, EINTR, EIO}},
    {"mmap", {ENOMEM, EACCES}},
    {"resize", {ENOSPC, EIO, EINTR}},
    {"readdir", {EIO}},
    {"chmod", {EPERM, EIO}},
    {"access", {EACCES, EIO}},
    {"statvfs", {EIO, EACCES}},
    {"utime", {EPERM, EIO}},
    {"close", {EIO}},
    {"fork", {EAGAIN}},
};

// Environment variables. Only calls on paths below the root, and on files open there, count. With the number
// 0 nothing fails, and the report gets a line for each call: its name, a blank, its path. Otherwise the call
// of that number, from 1 on, fails with the error of that index, modulo the errors that the call has, and the
// report gets the one line "name error path".
constexpr const char* cFaultRoot = "HOPBOX_FAULT_ROOT";
constexpr const char* cFaultNumber = "HOPBOX_FAULT_NUMBER";
constexpr const char* cFaultIndex = "HOPBOX_FAULT_INDEX";
constexpr const char* cFaultReport = "HOPBOX_FAULT_REPORT";

// With the name of a call, no call fails: the first call of that name writes the report, and waits until
// somebody has removed it.
constexpr const char* cFaultPause = "HOPBOX_FAULT_PAUSE";

// Beside that one call, every lstat of a path below the root that ends with the text fails with the error of
// that number, from the first one on.
constexpr const char* cFaultLookAt = "HOPBOX_FAULT_LOOK_AT";
constexpr const char* cFaultLookError = "HOPBOX_FAULT_LOOK_ERROR";
