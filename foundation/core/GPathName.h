#pragma once

#include "foundation/core/GString.h"

// The path of a file or folder: a value, made from text, that never touches the file system.
//
// The text may be in the system's own form or in the portable one, whose separator is '/' everywhere. It is
// cleaned when the path is made: repeated and trailing separators and "." are removed, and ".." removes the
// name before it. So a path that looks as if it were below a folder really is below it. If a name is a
// symbolic link, ".." therefore means the folder that holds the link.
//
// On Windows a path is relative, or begins with a drive ("C:\"), a share ("\\server\share\") or a bare
// separator (the current drive). The long-path prefix "\\?\" is removed. On POSIX a path is relative or
// begins with '/'; a backslash is an ordinary character.
//
// A text that no file system call can accept raises GCustomException with GErrorCode::cIllegalPath. On every
// system that is a text with a NUL inside. On Windows it is also a text with a reserved character, a name
// that ends in a dot or a blank (the system would silently use another name), a drive without a separator
// after it ("C:a"), a server without a share, or the device prefix "\\.\".
class GPathName
{
public:
    // The empty path, which means no path.
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

    // The form for calls of the operating system: the native path. On Windows, if the path names a drive or a
    // share, it has the prefix that removes the limit of 260 characters.
    GString GetSystemPath() const;

    // The last name; empty for a root and for the empty path.
    GString GetLeaf() const;

    // The last name up to the last dot. A dot at the beginning or the end of the name does not begin an
    // extension.
    GString GetLeafWithoutExtension() const;

    // What follows the last dot of the last name; empty when there is no extension.
    GString GetExtension() const;

    // The same path with another extension, given without its dot; an empty one removes the extension. Raises
    // cIllegalPath when the path has no last name or the extension holds a separator.
    GPathName WithExtension(const GString& extension) const;

    // The folder above. It is the empty path when there is nothing above: for a root, for a relative path of
    // one name or one that ends in "..", and for the empty path. So a loop that goes up always ends.
    GPathName GetParent() const;

    // A path below this one. The argument is a name or a relative path. If it is empty or absolute, or leads
    // out of this path, it raises cIllegalPath. The empty path gives the relative path itself.
    GPathName GetChild(const GString& leafOrRelative) const;

    // True when this path lies below the base, at any depth; a path does not lie below itself.
    bool IsBelow(const GPathName& base) const;

    // The relative path that leads from the base to this path. Raises cIllegalPath when this path does not
    // lie below the base.
    GPathName GetRelativeTo(const GPathName& base) const;

    // Compare as the system does: on Windows, case does not count. The file system is not asked, so two names
    // of one file may be different paths.
    bool operator==(const GPathName& other) const;
    bool operator!=(const GPathName& other) const { return !(*this == other); }

private:
    GString mPath;        // portable and tidy
    int mRootLength = 0;  // how much of mPath is the root, with its separator; 0 when relative
};
