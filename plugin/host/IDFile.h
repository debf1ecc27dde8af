#pragma once

#include "foundation/core/GPathName.h"
#include "plugin/host/PMString.h"

// A file of the host, named by its full path in the system's own form. It need not exist. Empty when the host
// has no file, for example for a document that was never saved.
//
// Host: the adaptor sets the host's file from the wide path (SetTString), and takes the path of one with
// FileUtils::SysFileToPMString.
class IDFile
{
public:
    IDFile() = default;
    explicit IDFile(const PMString& path) : mPath(path.GetString()) {}
    explicit IDFile(const GPathName& path) : mPath(path.GetNativePath()) {}

    void SetTString(const GString& path) { mPath = path; }
    bool IsEmpty() const { return mPath.isEmpty(); }

    // The last name of the path; empty for an empty file.
    PMString GetFileName() const;

    // The path as the plug-in's own type; empty for an empty file. Raises GErrorCode::cIllegalPath for a path
    // that no file system call could take.
    GPathName GetPathName() const { return GPathName(mPath); }

private:
    friend class FileUtils;

    GString mPath;
};

class FileUtils
{
public:
    // The full path text of a file.
    static PMString SysFileToPMString(const IDFile& file) { return PMString::Untranslated(file.mPath); }
};
