#pragma once

#include "foundation/core/GPathName.h"

#include <vector>

// Copies of damaged files, beside them: NAME.damaged is the newest, NAME.damaged.1 and NAME.damaged.2 are the
// two before it. Nothing ever reads them but people.
namespace GDamagedCopies
{
constexpr int cMostCopies = 3;

// Where the newest copy of the file is, or would be.
GPathName GetNewest(const GPathName& file);

// The copies that are there, the newest first; empty when there is none.
std::vector<GPathName> List(const GPathName& file);

// Keeps a copy of the file, for its owner only and flushed to disk, and gives its path. The oldest of three
// goes, once the new one is on disk. A file that the newest copy already holds is not kept again, so that a
// write that fails and is tried anew pushes no other copy out. Of one that is gone or holds no byte nothing
// is kept, which gives the empty path.
//
// Raises a GCustomException with GErrorCode::cFile when the file can't be kept: it must not be overwritten
// then. Whoever may change the file at the same time has to be locked out by the caller.
GPathName Keep(const GPathName& file);
}  // namespace GDamagedCopies
