#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

#include <functional>

// A temporary file that belongs to the process that made it, for as long as that process lives: the process
// holds a lock on the open file. The system drops the lock when its holder dies. This also works for
// processes that can't see each other, because they are in other namespaces, in containers, or on other
// machines with the same network file system. So the file itself shows whether it may be removed, never a
// process number in its name.
//
// How to use it for a file that will replace another one:
//
//     GOwnedFile part([&] { return GPathName(target.GetPortablePath() + "." + MakeRandomName(8) + ".part");
//     });
//     ... open part.GetPathName(), write it, flush it, close it, rename it to the target ...
//     part.Disown();          // it has moved; without this the destructor removes it
//
// and before that, for each file beside the target with a name of that form:
//
//     GOwnedFile::RemoveUnowned(leftover);
//
// To own something other than a file, such as a folder, make an owned file in it or beside it that represents
// it: see TemporaryFolder.
//
// The file may be opened, written, renamed and removed by others meanwhile; the lock means nothing to the
// system. An object is used by one thread at a time.
class GOwnedFile
{
public:
    // Gives another path at each call.
    using NextName = std::function<GPathName()>;

    // Makes an empty file, for its owner only, under the first name that is free, and owns it. Raises a
    // GCustomException with GErrorCode::cFile when no file can be made. If the file system has no locks, the
    // file is still made, and always counts as owned.
    explicit GOwnedFile(const NextName& nextName);

    // Removes the file, and gives the ownership up.
    ~GOwnedFile();
    GOwnedFile(const GOwnedFile&) = delete;
    GOwnedFile& operator=(const GOwnedFile&) = delete;

    const GPathName& GetPathName() const { return mPath; }

    // Gives the ownership up; the file stays.
    void Disown() noexcept;

    // Whether a living process owns the file. Also true if that can't be found out; false when there is no
    // such file.
    static bool IsOwned(const GPathName& path) noexcept;

    // Removes a file, unless a living process owns it or it is not a file. If it can't be removed, it stays
    // for the next clean-up. Never raises. `removeRest` removes what the file represents, and must not raise
    // either. It is called before the file is removed, while nobody else can own it. If it gives false, the
    // file stays, so that the rest can be found again.
    static void RemoveUnowned(const GPathName& path,
                              const std::function<bool()>& removeRest = nullptr) noexcept;

    // Takes the ownership of a file that was just made and is open for writing, until the handle is closed.
    // If the system can't do that, nobody else can treat the file as a leftover either. Does nothing to a
    // handle that is not open; the reason of the failed opening can still be read.
    static void Own(const PFileHandle& file) noexcept;

private:
    GPathName mPath;
    PFileHandle mHandle;  // open while the file is owned
};
