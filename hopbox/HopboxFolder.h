#pragma once

#include "foundation/core/GPathName.h"

// Folders whose names are made from names that a user or an unknown source gave.
namespace HopboxFolder
{
// Makes a folder name from any text; the same text always gives the same name. Every character that has a
// special meaning in paths on some system becomes "_", so that the name never leads out of the folder in
// which it is used. These are separators, reserved and control characters, halves of surrogate pairs, and
// dots and blanks at the end; each is replaced by one "_". An empty text and the names of Windows' devices
// get "_" in front. Names too long for a file system are cut. Two texts may give the same name.
GString MakeName(const GString& text);

// Makes a new folder, for its owner only, and gives its path: the name below the parent or, if that is taken,
// the name with "_" and five random characters. The parent must be there. Raises a GCustomException with
// GErrorCode::cFile when it can't be made.
GPathName MakeFresh(const GPathName& parent, const GString& name);
}  // namespace HopboxFolder
