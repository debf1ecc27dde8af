#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

namespace Morvane
{
// What Mac OS keeps about a file beside its content.
struct MacFileInfo
{
    QString type;           // four characters such as "TEXT"; empty when not known
    QString creator;        // the creator's four characters, and what follows them up to the first zero byte
    QByteArray finderInfo;  // the raw Finder information
};

// AppleDouble files: the "._" companions in which Mac OS stores a file's metadata on other systems' volumes
// and, below a folder "__MACOSX", in zip archives. Stateless; for any thread. Nothing throws; failures go to
// the process-wide trace.
class AppleDouble
{
public:
    // Reads type, creator and Finder information from an AppleDouble file. False, with a line in the trace
    // and `info` as it was, when the file can't be read or is none. A file without Finder information of 8
    // bytes or more is read with success and leaves the info empty. Of Finder information beyond 1 MiB the
    // start is taken.
    [[nodiscard]] static bool getMacFileType(const QString& path, MacFileInfo* info);

    // The same from a device that is open for reading, stands at its begin and can seek, such as an archive's
    // entry in memory.
    [[nodiscard]] static bool getMacFileType(QIODevice* file, MacFileInfo* info);

    // Whether the file's name begins with "._".
    static bool isAppleDoubleName(const QString& path);

    // The data file that a "._" file belongs to: the file of the same name without "._" in the same folder,
    // or, for one below a folder "__MACOSX", in the same place beside that folder. Empty when the "._" file
    // or the data file does not exist, or the name does not begin with "._".
    static QString getDataFile(const QString& appleDouble);

    // The inverse: the "._" file that belongs to a data file, beside it or below a folder "__MACOSX" in one
    // of the folders above. Empty when there is none.
    static QString getAppleDouble(const QString& dataFile);

    // Whether the path leads through a folder "__MACOSX". '/' separators, as in zip archives.
    static bool isInMacOsxFolder(const QString& path);
};
}  // namespace Morvane
