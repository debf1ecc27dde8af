#pragma once

#include "foundation/core/GPathName.h"

// A temporary file or folder that is removed when this object is deleted. If the process ends before that,
// the next start of the plug-in removes it (SmartFileList). For the main thread.
class GCPTSmartPathName
{
public:
    // Owns nothing.
    GCPTSmartPathName() = default;

    // Takes a path over and lists it. It need not exist yet.
    explicit GCPTSmartPathName(const GPathName& path);

    // Removes what the path names; failures of that are ignored.
    ~GCPTSmartPathName();

    GCPTSmartPathName(GCPTSmartPathName&& other) noexcept;
    GCPTSmartPathName& operator=(GCPTSmartPathName&& other) noexcept;

    // Make a new file or folder as GFileSystemBase does, for the owner only, and own it. It is listed before
    // it is made, so that nothing is left that is not listed, even if the process is killed. Raise when it
    // can't be made.
    static GCPTSmartPathName MakeFile(const GPathName& folder, const GString& wantedName);
    static GCPTSmartPathName MakeFolder(const GPathName& parent, const GString& nameTemplate);

    // Removes what the path names and takes another path over.
    void Reassign(const GPathName& path);

    // Removes what the path names, and removes the path from the list. If the file or folder can't be
    // removed, this process's next sweep tries again. Owns nothing afterwards.
    void Dispose();

    // Removes the path from the list, but not the file or folder. Gives the path; owns nothing afterwards.
    GPathName Keep();

    // The empty path when nothing is owned.
    const GPathName& GetPathName() const { return mPath; }

private:
    void TakeOver(const GPathName& path);
    void RemoveItem() const;
    void Unlist(const GPathName& kept = {});

    GPathName mPath;
    int32_t mNumber = 0;  // in the list; 0: not listed
};
