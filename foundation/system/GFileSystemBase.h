#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/core/GString.h"
#include "foundation/system/GSpecialPaths.h"

#include <functional>

// The file system as the system's parts see it: well-known folders by number, unique names, copying and
// removing. Every operation may be called from any thread. Failures raise a GCustomException with
// GErrorCode::cFile and the system's reason, unless the operation is one that tries.
class GFileSystemBase
{
public:
    // A folder by its number (GSpecialPath); the empty path for a number that names none.
    //
    // A registered folder comes first. Otherwise -2 is the system's temporary folder; -8, 35 and 53 lie in
    // this user's application data and 33 in all users'. The user's preference folder (35) is made when it is
    // missing, for the owner only; below a root of its own, so are the temporary folder (-2) and that of all
    // users (33).
    //
    // Where the environment variable MORVANE_ROOT names a folder, the temporary folder is its "Temp", and the
    // user's and all users' application data are its "AppData" and "CommonAppData". The variable is read at
    // each call. A relative path in it raises with GErrorCode::cIllegalPath: to ignore it would let a test
    // loose on a user's own files.
    static GPathName GetSpecialPath(int32_t number);

    // Sets the folder that a number stands for in this process; the empty path takes the registration back.
    static void RegisterSpecialPath(int32_t number, const GPathName& path);

    // The root that MORVANE_ROOT names; the empty path when there is none.
    static GPathName GetRoot();

    // What sets this root's names apart in a name space that all roots share: an underscore and the first
    // eight digits of the digest of its path, the same for two spellings of it on Windows. Empty without a
    // root.
    static GString GetRootMark();

    // The file of the module (plug-in, library or program) that this code was linked into. Its folder is
    // GetDllPath().GetParent().
    static GPathName GetDllPath();

    // Makes the folder with those above it that are missing, for the owner only. One that is there is left as
    // it is.
    static void CreateFolder(const GPathName& path);

    // Is told each path just before it is tried; one that is visibly taken is not tried then. Who keeps a
    // note of what was told last finds the file or folder again, even when this process is killed right after
    // it made it.
    using Announce = std::function<void(const GPathName& path)>;

    // Makes an empty file, for the owner only, that did not exist before, and gives its path: the wanted name
    // in the folder, or, where that is taken, the name with "_" and five random characters before its
    // extension. The making itself reserves the name: no two callers ever get the same.
    static GPathName CreateUniqueFile(const GPathName& folder, const GString& wantedName,
                                      const Announce& announce = nullptr);

    // Makes a folder, for the owner only, that did not exist before, and gives its path. Each 'X' of the name
    // template, such as "XXXXX", is replaced by a random digit or small letter.
    static GPathName CreateUniqueFolder(const GPathName& parent, const GString& nameTemplate,
                                        const Announce& announce = nullptr);

    // How CopyAndRenameFile takes what it finds. Both may be set.
    enum CopyFlag : uint32_t
    {
        cReplaceExisting = 1,      // a file of the new name, a read-only one included, is replaced
        cKeepModificationTime = 2  // the copy has the time of its source
    };

    // Copies the content of a file to a path, which may be another name in another folder. The copy appears
    // whole or not at all, and can be written by its owner, whatever the source allows. Raises when the
    // source is no file, and, without cReplaceExisting, when the new name is taken; nothing has changed then.
    static void CopyAndRenameFile(const GPathName& source, const GPathName& destination, uint32_t flags);

    // Removes a file, a read-only one and a symbolic link included, never what the link leads to. True when
    // nothing of that name is there afterwards, also when nothing was; false for a folder. Never raises.
    [[nodiscard]] static bool TryToRemoveFile(const GPathName& path) noexcept;

    // Removes a folder with all that it holds. Symbolic links and junctions in it, and the folder's own name
    // if it is one, are removed, never followed. True when nothing of that name is there afterwards, also
    // when nothing was; false for a file, a root and the empty path. Never raises.
    //
    // `readOnlyContent`: -1 (or anything but 0) removes read-only files and folders too; with 0 they stay,
    // and so do the folders that hold them. `attempts`: how many times, at least once, it goes over what
    // could not be removed because somebody has it open; 100 ms pass between two attempts.
    [[nodiscard]] static bool TryToRemoveFolder(const GPathName& path, int32_t readOnlyContent = -1,
                                                int32_t attempts = 10) noexcept;

    // The same for what may stay where it can't be removed: something else has failed already, or whoever
    // clears up later finds it.
    static void DropFile(const GPathName& path) noexcept { static_cast<void>(TryToRemoveFile(path)); }
    static void DropFolder(const GPathName& path) noexcept { static_cast<void>(TryToRemoveFolder(path)); }
};
