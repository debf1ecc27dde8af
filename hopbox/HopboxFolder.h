#pragma once

#include "foundation/core/GPathName.h"

// Folders that have the name of something a person or a stranger has named.
namespace HopboxFolder
{
// The name of a folder for any text, the same for the same text: what some system takes for more than part of
// a name is replaced by "_", so that it never leads out of the folder that it is put into. Separators,
// reserved and control characters and halves of surrogate pairs are replaced one by one, and so are dots and
// blanks at the end; an empty text and the names of Windows' devices get "_" in front. Names too long for a
// file system are cut. Two texts may give one name.
GString MakeName(const GString& text);

// Makes a folder, for its owner only, that was not there before, and gives its path: the name below the
// parent, or, where that is taken, the name with "_" and five random characters. The parent must be there.
// Raises a GCustomException with GErrorCode::cFile when it can't be made.
GPathName MakeFresh(const GPathName& parent, const GString& name);
}  // namespace HopboxFolder
