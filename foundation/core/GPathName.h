#pragma once

#include "foundation/core/GString.h"

// The path of a file or folder: a value, made from text, that never touches the file system.
//
// The text may be in the system's own form or in the portable one, whose separator is '/' everywhere. It is
// tidied when the path is made: repeated and trailing separators and "." go, and ".." takes back the name
// before it, so that a path that looks as if it lay below a folder does. Where a name is a symbolic link,
// ".." therefore means the folder that holds the link.
//
// On Windows a path is relative, or begins with a drive ("C:\"), a share ("\\server\share\") or a bare
// separator (the current drive). The long-path prefix "\\?\" is taken off. On POSIX a path is relative or
// begins with '/'; a backslash is a character like any other.
//
// A text that no file system call could take raises GCustomException with GErrorCode::cIllegalPath: one with
// a NUL inside; on Windows also one with a reserved character or a name that ends in a dot or a blank (the
// system would silently take another name), with a drive but no separator after it ("C:a"), with a server but
// no share, or with the device prefix "\\.\".
class GPathName
{
public:
    // The empty path: none.
    GPathName() = default;

    // An empty text gives the empty path.
    explicit GPathName(const GString& nativeOrPortablePath);

    // Whether a path can be made of the text.
    static bool IsLegal(const QStringRef& nativeOrPortablePath);

    bool IsEmpty() const { return mPath.isEmpty(); }
    bool IsAbsolute() const { return mRootLength > 0; }

    // True for "/", "C:\" and "\\server\share\" alone.
    bool IsRoot() const { return mRootLength > 0 && mRootLength == mPath.size(); }

    // With the separators of this system, for the user and for other programs.
    GString GetNativePath() const;

    // With '/' separators. Equal to the native path on POSIX.
    const GString& GetPortablePath() const { return mPath; }

    // The form for the calls of the operating system: as the native path, on Windows with the prefix that
    // lifts the limit of 260 characters when the path names a drive or a share.
    GString GetSystemPath() const;

    // The last name; empty for a root and for the empty path.
    GString GetLeaf() const;

    // The last name up to the last dot. A dot that begins or ends the name starts no extension.
    GString GetLeafWithoutExtension() const;

    // What follows the last dot of the last name; empty when there is no extension.
    GString GetExtension() const;

    // The same path with another extension, given without its dot; an empty one takes the extension away.
    // Raises cIllegalPath when the path has no last name or the extension holds a separator.
    GPathName WithExtension(const GString& extension) const;

    // One step up; the empty path when there is nothing above: for a root, for a relative path of one name,
    // for one that ends in "..", and for the empty path. Walking up from anywhere therefore ends.
    GPathName GetParent() const;

    // A path below this one. The argument is a name or a relative path; one that is empty, absolute or leads
    // out of this path raises cIllegalPath. Below the empty path, gives the relative path itself.
    GPathName GetChild(const GString& leafOrRelative) const;

    // True when this path lies below the base, at any depth; a path does not lie below itself.
    bool IsBelow(const GPathName& base) const;

    // The relative path that leads from the base to this path. Raises cIllegalPath when this path does not
    // lie below the base.
    GPathName GetRelativeTo(const GPathName& base) const;

    // Compare by the rule of the system: without regard to case on Windows. The file system is not asked, so
    // two names of one file may differ.
    bool operator==(const GPathName& other) const;
    bool operator!=(const GPathName& other) const { return !(*this == other); }

private:
    GString mPath;        // portable and tidy
    int mRootLength = 0;  // how much of mPath is the root, its separator included; 0 when relative
};
