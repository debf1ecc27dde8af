#pragma once

#include <cstdint>

// Codes of the errors that the foundation raises. Other programs compare them: a number never changes.
namespace GErrorCode
{
// A lock file or a file that guards one is not available (missing folder, no right).
constexpr int32_t cLockFile = 40092;

// A message could not be posted to a receiver.
constexpr int32_t cPostMessage = 40153;

// The header of a channel segment is not valid.
constexpr int32_t cSegmentHeader = 40154;

// A path that the file system can't hold (NUL inside, empty where a name is needed).
constexpr int32_t cIllegalPath = 40001;

// A file or folder operation failed; the description says which, on what and why.
constexpr int32_t cFile = 40002;

// An argument that the operation does not accept.
constexpr int32_t cIllegalArgument = 40003;

// The inter-process lock; these four have texts in the string pool.
constexpr int32_t cCreateSemaphore = 30050000;
constexpr int32_t cLockSemaphore = 30050001;
constexpr int32_t cUnlockSemaphore = 30050002;
constexpr int32_t cUnlinkSemaphore = 30050003;
}  // namespace GErrorCode
