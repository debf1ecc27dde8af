#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/GOwnedFile.h"

// A new folder in the temporary folder, for its owner only. It is removed with its whole content when this
// object is deleted.
//
// Beside it is a file that this process owns (the folder's name and ".owner"). Each new object first removes
// the folders whose owners were killed or could not remove everything.
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
