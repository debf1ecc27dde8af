#pragma once

#include "foundation/core/GString.h"

// What GPathName must know of the system's paths. All texts are portable, with '/' separators, unless said
// otherwise.
namespace GPathNameRules
{
// Whether two names that differ only in case are the same name.
extern const Qt::CaseSensitivity cCaseSensitivity;

// Replaces the system's separators by '/' and removes the long-path prefix.
GString ToPortable(const GString& nativeOrPortablePath);

// The length of the root at the beginning of the path, with its separator; 0 for a relative path, -1 for a
// root that is not allowed. The separator may be missing at the end of the text.
int GetRootLength(const GString& portablePath);

// Whether a file can have the name. An empty name is accepted, because it can be between two separators.
bool IsLegalName(const QStringRef& name);

// Whether a quick check shows that a path can be made of the text, which may be in the system's own form.
bool IsPlainlyLegal(const QStringRef& path);

GString ToNative(const GString& portablePath);

// The path for the calls of the operating system.
GString ToSystem(const GString& portablePath);
}  // namespace GPathNameRules
