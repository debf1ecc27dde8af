#pragma once

#include "foundation/core/GPathName.h"

// Where exports are put: the temporary folder has a folder for the user, and in it a folder for each Hopbox.
// Their names are made safe (HopboxFolder::MakeName), so that no name of a user or a Hopbox leads to another
// place.
namespace WorkFolder
{
// The folder of a Hopbox, which need not exist.
GPathName GetPath(const GString& hopboxName);

// Makes the folder of a Hopbox if it is missing. Raises when it can't be made, and when it or the user's
// folder is a link or belongs to somebody else: everybody may be able to write to the temporary folder.
void Make(const GPathName& workFolder);
}  // namespace WorkFolder
