#pragma once

#include "foundation/core/GPathName.h"

// A temporary file or folder that removes itself when its owner ends, and that the next start of the plug-in
// sweeps when the process did not live to do so (SmartFileList). For the main thread.
class GCPTSmartPathName
{
public:
    // Owns nothing.
    GCPTSmartPathName() = default;

    // Takes a path over, whether anything of that name is there yet or not, and lists it.
    explicit GCPTSmartPathName(const GPathName& path);

    // Removes what the path names; failures of that are ignored.
    ~GCPTSmartPathName();

    GCPTSmartPathName(GCPTSmartPathName&& other) noexcept;
    GCPTSmartPathName& operator=(GCPTSmartPathName&& other) noexcept;

    // Make a fresh file or folder as GFileSystemBase does, for the owner only, and own it. It is listed
    // before it is made, so that a process that is killed at any moment leaves nothing unlisted. Raise when
    // it can't be made.
    static GCPTSmartPathName MakeFile(const GPathName& folder, const GString& wantedName);
    static GCPTSmartPathName MakeFolder(const GPathName& parent, const GString& nameTemplate);

    // Removes what the path names and takes another path over.
    void Reassign(const GPathName& path);

    // Removes what the path names and takes it out of the list, also where it can't be removed: this
    // process's next sweep tries that again. Owns nothing afterwards.
    void Dispose();

    // Takes the path out of the list and leaves what it names where it is. Gives the path; owns nothing
    // afterwards.
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
