#pragma once

#include "foundation/core/GPathName.h"

#include <QFile>
#include <QStringList>

#include <optional>

// The calls of the operating system that the inbox needs besides Qt's. Where one fails, GetLastSystemError
// has the reason.
namespace InboxCalls
{
// Makes one folder, with the rights that the user gives what he makes.
[[nodiscard]] bool MakeFolder(const GPathName& folder);

// Gives a file or folder another name on the same volume, in one step, and never over one that is there.
[[nodiscard]] bool MoveToFreeName(const GPathName& from, const GPathName& to);

// Whether the last call failed because something bears the name.
bool IsNameTaken(int error);

enum class Look
{
    Found,
    Nothing,  // nothing bears the name, nor could anything
    Unknown   // the system could not look, this time
};
Look LookAt(const GPathName& path);

enum class Kind
{
    File,
    Folder,
    Other,   // a link, a pipe and the like, or nothing any more
    Unknown  // the system could not look, this time
};
// Links are not followed. The size is a file's, in bytes.
Kind GetKind(const GPathName& path, qint64* size);

// By what one tells that somebody has written to a file: its size in bytes, and when it was last changed, in
// units of the system.
struct State
{
    qint64 size = -1;
    qint64 time = 0;

    bool operator!=(const State& other) const { return size != other.size || time != other.time; }
};
// Of an open file, as it is now. False when the system does not tell.
[[nodiscard]] bool GetState(const QFile& file, State* state);

// The names in a folder, hidden ones included. False when they can't all be read.
[[nodiscard]] bool ListNames(const GPathName& folder, QStringList* names);

// Whether files have a mode that can be set.
bool HasModes();

// Gives a copy that has no name in the inbox yet, with all that is in it, the rights that it is to have
// there: the group of the inbox, where the user is in it, and the mode; a folder may be entered by whoever
// may read it. Without a mode that of the copy stays, which is the user's umask. Nothing on Windows. False
// when the mode can't be set.
[[nodiscard]] bool PrepareRights(const GPathName& copy, const GPathName& inbox, std::optional<unsigned> mode);

// Gives what has come to its name the rights that its folder hands down. Nothing on POSIX, where they are
// prepared. False when that fails.
[[nodiscard]] bool InheritRights(const GPathName& path);

// Keeps a folder out of the sight of people who did not ask for hidden ones, where its name does not do that.
void Hide(const GPathName& folder);
}  // namespace InboxCalls
