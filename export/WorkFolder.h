#pragma once

#include "foundation/core/GPathName.h"

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
