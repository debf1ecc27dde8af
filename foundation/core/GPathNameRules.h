#pragma once

#include "foundation/core/GString.h"

// What GPathName must know of the system's paths. All texts are portable, with '/' separators, unless said
// otherwise.
namespace GPathNameRules
{
// Whether two names that differ only in case are one.
extern const Qt::CaseSensitivity cCaseSensitivity;

// Replaces the system's separators by '/' and takes the long-path prefix off.
GString ToPortable(const GString& nativeOrPortablePath);

// The length of the root that begins the path, its separator included; 0 for a relative path, -1 for a root
// that is not allowed. The separator may be missing at the end of the text.
int GetRootLength(const GString& portablePath);

// Whether a file can have the name; an empty one passes, as what stands between two separators.
bool IsLegalName(const QStringRef& name);

// Whether a glance tells that a path can be made of the text, which may be in the system's own form.
bool IsPlainlyLegal(const QStringRef& path);

GString ToNative(const GString& portablePath);

// The path for the calls of the operating system.
GString ToSystem(const GString& portablePath);
}  // namespace GPathNameRules
