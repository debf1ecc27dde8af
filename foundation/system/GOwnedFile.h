#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

#include <functional>

// A temporary file that belongs to whoever made it, for as long as that process lives: a lock is held on the
// open file. The system drops the lock when its holder dies, also one that another namespace of processes, a
// container or another machine on the same network file system can't see. So whether a leftover may go is
// asked of the file itself, never of a process number in its name.
//
// How to use it for a file that is to take the place of another:
//
//     GOwnedFile part([&] { return GPathName(target.GetPortablePath() + "." + MakeRandomName(8) + ".part");
//     });
//     ... open part.GetPathName(), write it, flush it, close it, rename it to the target ...
//     part.Disown();          // it has moved; without this the destructor removes it
//
// and before that, for each file beside the target whose name has that form:
//
//     GOwnedFile::RemoveUnowned(leftover);
//
// Who keeps something else than a file, such as a folder, makes an owned file in it or beside it that stands
// for the whole: see TemporaryFolder.
//
// The file may be opened, written, renamed and removed by others meanwhile; the lock means nothing to the
// system. An object is used by one thread at a time.
class GOwnedFile
{
public:
    // Gives another path at each call.
    using NextName = std::function<GPathName()>;

    // Makes an empty file, for its owner only, under the first name that is free, and owns it. Raises a
    // GCustomException with GErrorCode::cFile when none can be made. Where the file system knows no locks the
    // file is made all the same, and counts as owned for ever.
    explicit GOwnedFile(const NextName& nextName);

    // Removes the file, and gives the ownership up.
    ~GOwnedFile();
    GOwnedFile(const GOwnedFile&) = delete;
    GOwnedFile& operator=(const GOwnedFile&) = delete;

    const GPathName& GetPathName() const { return mPath; }

    // Gives the ownership up; what has the name stays.
    void Disown() noexcept;

    // Whether a living process owns the file. True also where that can't be found out; false when there is
    // no such file.
    static bool IsOwned(const GPathName& path) noexcept;

    // Removes a file, unless a living process owns it or it is none. One that can't be removed stays for
    // whoever clears up next. Never raises. What the file stands for is removed by `removeRest`, which must
    // not raise either: it is called before the file goes, while nobody else can own it. Where it gives false
    // the file stays, by which the rest is found again.
    static void RemoveUnowned(const GPathName& path,
                              const std::function<bool()>& removeRest = nullptr) noexcept;

    // Takes the ownership of a file that was just made and is open for writing, until the handle is closed.
    // Where the system can't, nobody can take the file for a leftover either. Does nothing to a handle that
    // is not open; the reason of the failed opening stays to be read.
    static void Own(const PFileHandle& file) noexcept;

private:
    GPathName mPath;
    PFileHandle mHandle;  // open while the file is owned
};
