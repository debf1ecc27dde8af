#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/PFileHandle.h"

class QFile;

// The calls of the operating system behind GFileSystemBase. Where one fails, GetLastSystemError has the
// reason.
namespace GFileCalls
{
// Writes all of the bytes to an open, unbuffered file, also where the system takes them in parts, as it does
// with the last ones that a volume has room for. False, with the file's error set, when that fails.
[[nodiscard]] bool WriteAll(QFile& file, const char* bytes, qint64 count);

// Brings what was written to an open, unbuffered file to the disk.
[[nodiscard]] bool FlushFile(const QFile& file);

// Sees to it that the names in a folder survive a power cut. Always true on Windows, which has no such call.
[[nodiscard]] bool FlushFolder(const GPathName& folder);

// Makes and opens an empty file for writing, for its owner only; not open when that fails, as it does when
// anything of that name exists.
PFileHandle CreateNewFile(const GPathName& path);

// Whether the last call failed because the name is taken.
bool IsNameTaken(int error);

// Gives a file another name on the same volume in one step. On Windows, tries for about two seconds while
// somebody has one of the two open. What has that name is replaced, read-only or
// not, or makes the call fail.
[[nodiscard]] bool RenameFile(const GPathName& from, const GPathName& to, bool isReplacing);

// Removes a file or a link. False when that fails or it is a folder; a name that is not there counts as
// removed.
[[nodiscard]] bool RemoveFile(const GPathName& path, bool readOnlyToo);

// Removes a folder with its content, as far as that goes, never following a link. The same results.
[[nodiscard]] bool RemoveTree(const GPathName& path, bool readOnlyToo);
}  // namespace GFileCalls
