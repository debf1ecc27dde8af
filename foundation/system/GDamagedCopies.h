#pragma once

#include "foundation/core/GPathName.h"

#include <vector>

// Copies of damaged files, beside them: NAME.damaged is the newest, NAME.damaged.1 and NAME.damaged.2 are the
// two before it. Only people read them.
namespace GDamagedCopies
{
constexpr int cMostCopies = 3;

// Where the newest copy of the file is, or would be.
GPathName GetNewest(const GPathName& file);

// The copies that are there, the newest first; empty when there is none.
std::vector<GPathName> List(const GPathName& file);

// Keeps a copy of the file, for its owner only and flushed to disk, and gives its path. Once the new copy is
// on disk, the oldest of three is removed. If the newest copy already has the same content, no new copy is
// made, so that a write that fails and is tried again removes no other copy. If the file is missing or empty,
// nothing is kept and the result is the empty path.
//
// Raises a GCustomException with GErrorCode::cFile when the file can't be kept: it must not be overwritten
// then. The caller must make sure that nobody changes the file at the same time.
GPathName Keep(const GPathName& file);
}  // namespace GDamagedCopies
