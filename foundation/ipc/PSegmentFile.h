#pragma once

#include "foundation/ipc/GSharedSegment.h"
#include "foundation/system/PFileHandle.h"

#include <sys/stat.h>

// The open file of a shared segment. Every error is raised with GErrorCode::cSegmentHeader.
class PSegmentFile
{
public:
    // Opens or makes the file; if it makes the file, also its folder. Refuses anything that is not a file, a
    // file that belongs to another user or that others may open, and a folder in which others may remove
    // files.
    PSegmentFile(const GString& name, GSharedSegment::Mode mode);

    int Get() const { return static_cast<int>(mHandle.Get()); }
    const GString& GetName() const { return mName; }
    struct stat GetStatus() const;

    // How large it is; -1 when the system does not tell. Never raises.
    off_t GetSize() const noexcept;

    // The same, by the name; -1 also if the name leads to another file, or to none. Never raises.
    off_t GetNamedSize() const noexcept;
    bool IsNamed() const noexcept { return GetNamedSize() >= 0; }

    // Requests space for every byte: if memory is mapped for which the file system has no space, the first
    // touch of it kills the process. Existing content stays. False, with errno set, when there is not enough
    // space.
    [[nodiscard]] bool ClaimSpace(off_t size, bool isNew) const;

    // If the file belongs to another user, the text names that user.
    [[noreturn]] void RaiseLastError() const;

    // The path for the calls of the system.
    static QByteArray GetPath(const GString& name);

private:
    void CheckFolder() const;
    void Check(const struct stat& status) const;

    GString mName;
    PFileHandle mHandle;
    dev_t mDevice = 0;  // identify the file, as long as it is open
    ino_t mNode = 0;
};

// Holds the lock of the segment's file while this object lives. A mapping would keep the lock after the
// descriptor is closed, so it is released with a call of its own. It is held only for a short time, and the
// system releases it when its holder dies.
class PSegmentLock
{
public:
    explicit PSegmentLock(const PSegmentFile& file);
    ~PSegmentLock();
    PSegmentLock(const PSegmentLock&) = delete;
    PSegmentLock& operator=(const PSegmentLock&) = delete;

private:
    const int mDescriptor;
};
