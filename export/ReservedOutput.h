#pragma once

#include "export/GCPTSmartPathName.h"

// A name in a work folder for something that an export makes there. Nothing that was there is overwritten,
// also when two hosts export at the same moment: the name is taken by an empty file or folder, or, where it
// is taken already, by one in a fresh sub-folder. What the export has left there goes with this object unless
// it is kept.
class ReservedOutput
{
public:
    enum class Kind
    {
        File,
        Folder
    };

    // The name must be one that can stand in a folder. Raises when it can't be reserved.
    ReservedOutput(const GPathName& workFolder, const GString& name, Kind kind);

    const GPathName& GetPathName() const { return mPath; }

    void Keep() { mOwned.Keep(); }

private:
    GCPTSmartPathName mOwned;  // the file or folder, or the sub-folder
    GPathName mPath;
};
