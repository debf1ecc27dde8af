#pragma once

#include "foundation/ipc/GSharedSegment.h"
#include "foundation/system/PFileHandle.h"

#include <sys/stat.h>

// The open file of a shared segment. Every error is raised with GErrorCode::cSegmentHeader.
class PSegmentFile
{
public:
    // Opens or makes the file, and its folder where one is made. Refuses what is no file, what is another
    // user's or open to others, and a folder in which others may take files away.
    PSegmentFile(const GString& name, GSharedSegment::Mode mode);

    int Get() const { return static_cast<int>(mHandle.Get()); }
    const GString& GetName() const { return mName; }
    struct stat GetStatus() const;

    // How large it is; -1 when the system does not tell. Never raises.
    off_t GetSize() const noexcept;

    // The same, by the name; -1 also where the name leads to another file, or to none. Never raises.
    off_t GetNamedSize() const noexcept;
    bool IsNamed() const noexcept { return GetNamedSize() >= 0; }

    // Claims every byte: where memory is mapped that the file system does not have, the first touch of it
    // kills the process. What a file holds already stays. False, with errno set, without the space.
    [[nodiscard]] bool ClaimSpace(off_t size, bool isNew) const;

    // The text names who holds the file where that is another user.
    [[noreturn]] void RaiseLastError() const;

    // The path for the calls of the system.
    static QByteArray GetPath(const GString& name);

private:
    void CheckFolder() const;
    void Check(const struct stat& status) const;

    GString mName;
    PFileHandle mHandle;
    dev_t mDevice = 0;  // which file this is, as long as it is open
    ino_t mNode = 0;
};

// Has the lock of the segment's file while it lives. A mapping would keep it after the descriptor is closed,
// so it is let go of by name. Who holds it does little; whoever dies with it lets it go.
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
