#pragma once

#include <QString>

namespace Morvane
{
struct MacFileInfo;

// Answers which extension a file from Mac OS should have, by its AppleDouble file and the process's
// correspondence table (PcExchange). Stateless; for any thread. Nothing throws; what can't be answered is
// logged to the process-wide trace.
class FileExtensionManager
{
public:
    // The extension, without the dot, for the file's Mac type and creator. Empty when there is no table, no
    // AppleDouble file, or no record for the two.
    static QString getExtension(const QString& file);

    // Type, creator and Finder information of a file, read from its AppleDouble file, or from the file itself
    // when its own name begins with "._". False when there is none or it can't be read.
    [[nodiscard]] static bool getFileInfo(const QString& file, MacFileInfo* info);

    // Whether the file is of the kind that the extension (without the dot) names: its name ends so, or its
    // Mac type says so. Extensions are what follows the last "." and are compared without regard to case.
    static bool isType(const QString& file, const QString& extension);

    // The name with the extension: as it is when it has it already, else with "." + extension added. An empty
    // extension changes nothing. `name` may be a path.
    static QString adjustNameWithExtension(const QString& name, const QString& extension);
};
}  // namespace Morvane
