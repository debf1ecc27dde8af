#pragma once

#include "export/GCPTSmartPathName.h"

// Where exports come to lie: in the temporary folder, a folder of the user's with one for each Hopbox in it.
// Their names are made safe (HopboxFolder::MakeName), so nothing that a user or a Hopbox is called leads
// elsewhere.
namespace WorkFolder
{
// The folder of a Hopbox, which need not be there.
GPathName GetPath(const GString& hopboxName);

// Makes the folder of a Hopbox when it is missing. Raises when it can't be made, and when it or the user's is
// a link or somebody else's: the temporary folder may be anybody's.
void Make(const GPathName& workFolder);
}  // namespace WorkFolder

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
