#pragma once

#include "export/GCPTSmartPathName.h"

// A name in a work folder for something that an export makes there. Nothing existing is overwritten, even
// when two hosts export at the same moment: an empty file or folder with the name is made first, in a new
// sub-folder if the name is taken already. What the export has left there is removed with this object unless
// it is kept.
class ReservedOutput
{
public:
    enum class Kind
    {
        File,
        Folder
    };

    // The name must be valid as a file name. Raises when it can't be reserved.
    ReservedOutput(const GPathName& workFolder, const GString& name, Kind kind);

    const GPathName& GetPathName() const { return mPath; }

    void Keep() { mOwned.Keep(); }

private:
    GCPTSmartPathName mOwned;  // the file or folder, or the sub-folder
    GPathName mPath;
};
