#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/GOwnedFile.h"

// A fresh folder in the temporary folder, for its owner only, that goes with this object and all that it
// holds.
//
// Beside it lies a file that this process owns (the folder's name and ".owner"). Each new one removes the
// folders whose owners were killed, or could not remove all of it.
class TemporaryFolder
{
public:
    // Raises when the folder can't be made.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const GPathName& GetPathName() const { return mPath; }

private:
    GOwnedFile mOwner;
    GPathName mPath;
};
