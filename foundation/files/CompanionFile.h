#pragma once

#include <QString>

// The AppleDouble companion of a file: a file beside it, named "._" + its name, that holds what other
// systems' file systems can't.
namespace Morvane
{
// Whether the name of the file (a full path is fine) begins with "._".
bool isCompanion(const QString& path);

// The path at which the companion of a file lies, there or not. Empty for a companion, which has none itself.
QString getCompanionPath(const QString& path);
}  // namespace Morvane
