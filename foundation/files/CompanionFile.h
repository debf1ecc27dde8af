#pragma once

#include <QString>

// The AppleDouble companion of a file: a file beside it, named "._" + its name. It holds what the file
// systems of other systems can't hold.
namespace Morvane
{
// Whether the name of the file (a full path is fine) begins with "._".
bool isCompanion(const QString& path);

// The path of a file's companion, even if there is no companion. Empty for a companion, which has no
// companion itself.
QString getCompanionPath(const QString& path);
}  // namespace Morvane
