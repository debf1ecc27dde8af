#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

class QFile;

// The calls of the operating system behind GFileSystemBase. If a call fails, GetLastSystemError has the
// reason.
namespace GFileCalls
{
// Writes all of the bytes to an open, unbuffered file, also if the system accepts them only in parts, as it
// does when a volume becomes full. False, with the file's error set, when that fails.
[[nodiscard]] bool WriteAll(QFile& file, const char* bytes, qint64 count);

// Flushes what was written to an open, unbuffered file to the disk.
[[nodiscard]] bool FlushFile(const QFile& file);

// Makes sure that the names in a folder survive a power cut. Always true on Windows, which has no such call.
[[nodiscard]] bool FlushFolder(const GPathName& folder);

// Makes and opens an empty file for writing, for its owner only. The handle is not open when that fails, for
// example because anything of that name exists.
PFileHandle CreateNewFile(const GPathName& path);

// Whether the last call failed because the name is taken.
bool IsNameTaken(int error);

// Gives a file another name on the same volume in one step. On Windows, tries for about two seconds while
// somebody has one of the two open. If something has the new name already, `isReplacing` decides: either it
// is replaced, even if it is read-only, or the call fails.
[[nodiscard]] bool RenameFile(const GPathName& from, const GPathName& to, bool isReplacing);

// Removes a file or a link. False when that fails or it is a folder; a name that is not there counts as
// removed.
[[nodiscard]] bool RemoveFile(const GPathName& path, bool readOnlyToo);

// Removes a folder with as much of its content as possible; never follows a link. The same results.
[[nodiscard]] bool RemoveTree(const GPathName& path, bool readOnlyToo);
}  // namespace GFileCalls
