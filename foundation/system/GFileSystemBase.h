#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/core/GString.h"
#include "foundation/system/GSpecialPaths.h"

#include <functional>

// The file system for all parts of this system: well-known folders by number, unique names, copying and
// removing. Every operation may be called from any thread. Failures raise a GCustomException with
// GErrorCode::cFile and the system's reason, except in operations that only try, such as TryToRemoveFile.
class GFileSystemBase
{
public:
    // A folder by its number (GSpecialPath); the empty path for an unknown number.
    //
    // A registered folder comes first. Otherwise -2 is the system's temporary folder; -8, 35 and 53 are in
    // this user's application data and 33 in that of all users. The user's preference folder (35) is made
    // when it is missing, for the owner only; below a root of its own, so are the temporary folder (-2) and
    // that of all users (33).
    //
    // If the environment variable MORVANE_ROOT names a folder, the temporary folder is "Temp" in it, and the
    // application data of the user and of all users are "AppData" and "CommonAppData" in it. The variable is
    // read at each call. A relative path in it raises with GErrorCode::cIllegalPath: if it were ignored, a
    // test could change a user's own files.
    static GPathName GetSpecialPath(int32_t number);

    // Sets the folder that a number stands for in this process; the empty path removes the registration.
    static void RegisterSpecialPath(int32_t number, const GPathName& path);

    // The root that MORVANE_ROOT names; the empty path when there is none.
    static GPathName GetRoot();

    // A text that makes the names of this root different from those of other roots, where all roots share one
    // name space. It is an underscore and the first eight digits of the digest of the root's path; on Windows
    // it is the same for two spellings of the path. Empty without a root.
    static GString GetRootMark();

    // The file of the module (plug-in, library or program) that this code was linked into. Its folder is
    // GetDllPath().GetParent().
    static GPathName GetDllPath();

    // Makes the folder, and missing folders above it, for the owner only. Existing folders are not changed.
    static void CreateFolder(const GPathName& path);

    // Called with each path just before it is tried; if the name is then seen to be taken, it is not tried. A
    // caller that stores the last path can find the file or folder again, even when this process is killed
    // right after making it.
    using Announce = std::function<void(const GPathName& path)>;

    // Makes a new empty file, for the owner only, and gives its path: the wanted name in the folder or, if
    // that is taken, the name with "_" and five random characters before its extension. Making the file
    // reserves the name, so two callers never get the same.
    static GPathName CreateUniqueFile(const GPathName& folder, const GString& wantedName,
                                      const Announce& announce = nullptr);

    // Makes a new folder, for the owner only, and gives its path. Each 'X' of the name template, such as
    // "XXXXX", is replaced by a random digit or small letter.
    static GPathName CreateUniqueFolder(const GPathName& parent, const GString& nameTemplate,
                                        const Announce& announce = nullptr);

    // Options of CopyAndRenameFile. Both may be set.
    enum CopyFlag : uint32_t
    {
        cReplaceExisting = 1,      // a file with the new name is replaced, even if it is read-only
        cKeepModificationTime = 2  // the copy has the time of its source
    };

    // Copies the content of a file to a path, which may be another name in another folder. The copy appears
    // whole or not at all, and its owner can write to it, even if the source is read-only. Raises when the
    // source is not a file and, without cReplaceExisting, when the new name is taken; nothing has changed
    // then.
    static void CopyAndRenameFile(const GPathName& source, const GPathName& destination, uint32_t flags);

    // Removes a file, even if it is read-only, or a symbolic link, but never what the link leads to. True
    // when nothing has that name afterwards, also when nothing had it before; false for a folder. Never
    // raises.
    [[nodiscard]] static bool TryToRemoveFile(const GPathName& path) noexcept;

    // Removes a folder with everything in it. Symbolic links and junctions in it are removed and never
    // followed, also when the path itself is one. True when nothing has that name afterwards, also when
    // nothing had it before; false for a file, a root and the empty path. Never raises.
    //
    // `readOnlyContent`: -1 (or anything but 0) removes read-only files and folders too; with 0 they stay,
    // and also the folders that hold them. `attempts`: how many times, at least once, it tries to remove what
    // somebody has open; it waits 100 ms between two attempts.
    [[nodiscard]] static bool TryToRemoveFolder(const GPathName& path, int32_t readOnlyContent = -1,
                                                int32_t attempts = 10) noexcept;

    // The same for something that may stay if it can't be removed: because something else has failed already,
    // or because a later clean-up finds it.
    static void DropFile(const GPathName& path) noexcept { static_cast<void>(TryToRemoveFile(path)); }
    static void DropFolder(const GPathName& path) noexcept { static_cast<void>(TryToRemoveFolder(path)); }
};
