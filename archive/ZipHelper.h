#pragma once

#include "archive/ZipArchiver.h"
#include "archive/ZipEntry.h"
#include "archive/ZipLimits.h"

#include <QStringList>
#include <QVector>

#include <functional>

// Whether a whole archive is extracted with the folders of its entries, or every file directly into the
// destination, under the last part of its name.
enum class ZipPaths
{
    Keep,
    Drop
};

// Whether the extraction of a whole archive ends at the first entry that fails.
enum class ZipOnError
{
    Stop,
    GoOn
};

// Optional settings for one operation; all of them are off by default.
struct ZipRun
{
    // Where failures are reported, line by line; null for the process-wide trace.
    Morvane::ILogInterface* log = nullptr;

    // How much extraction may write to the disk. The sizes that the archive declares are added up first, and
    // an archive that exceeds the limits is refused before anything is written.
    Morvane::ZipLimits limits;

    // Called during extraction with the number of bytes written so far and the number of all bytes. If it
    // gives false, the extraction ends.
    std::function<bool(qint64 done, qint64 total)> progress;

    // If a list is given, things below a folder that can't be packed are added to the list, and the rest is
    // packed. Without a list the first such thing ends the packing, and what was at the archive's path stays.
    // In both cases the log names them.
    QStringList* leftOut = nullptr;
};

// Packs whole folders into archives, and extracts whole archives into folders. The operations are static and
// may run on any thread. Each gives whether all went well, reports every failure to the log under the
// operation's name ("ZipHelper::doExtractCurrentFile"), and never throws.
//
// Extraction does not trust an archive: see Morvane::ZipArchive for what it refuses.
class ZipHelper
{
public:
    // Packs a file, or a folder with everything below it, including hidden files. Names in the archive are
    // relative to the base folder; if that is empty, to the folder that holds the item. A link to a file
    // counts as the file. Some things can't be packed: links to folders or to nothing, pipes, sockets and
    // devices, things that can't be read, and a file that changes meanwhile; see ZipRun::leftOut. The archive
    // itself is skipped. A failure leaves what was at the archive's path. `level` is 0 (stored) to 9; an
    // empty password encrypts nothing.
    [[nodiscard]] static bool compressItem(const QString& item, const QString& zipPath,
                                           Morvane::ZipStart start, const QString& password, int level,
                                           const QString& baseFolder, Morvane::ZipNames names,
                                           const ZipRun& run = {});

    // Packs what is below a folder, with names relative to it. The archive is named as given: no ".zip" is
    // added.
    [[nodiscard]] static bool compressFolderContents(const QString& folder, const QString& zipPath,
                                                     Morvane::ZipStart start, const QString& password,
                                                     int level, Morvane::ZipNames names,
                                                     const ZipRun& run = {});

    // Extracts every entry. Files get the date of their entries. `mode` is added to the rights of files and
    // folders, as the nine bits of a file mode.
    [[nodiscard]] static bool extractFiles(const QString& zipPath, const QString& destinationFolder,
                                           ZipPaths paths, const QString& password, ZipOnError onError,
                                           int mode, const ZipRun& run = {});

    // Extracts only the entries with these names. Ends at the first entry that fails. A name that is not in
    // the archive is a failure, too, which is reported before anything is extracted.
    [[nodiscard]] static bool extractFiles(const QString& zipPath, const QStringList& names,
                                           const QString& destinationFolder, ZipPaths paths,
                                           const QString& password, int mode, const ZipRun& run = {});

    // The description of every entry, in the order of the archive. False when the archive can't be read to
    // its end; the list then holds what could be read.
    [[nodiscard]] static bool getEntryList(const QString& zipPath, QVector<Morvane::ZipEntry>& entries,
                                           const ZipRun& run = {});

    // The number of bytes of all files below a folder. Hidden files, system files and folders that are links
    // are not counted.
    static qint64 getDirSize(const QString& folder);

    // Adds an item to an archive that is being written, as compressItem() does, with the archive's own level
    // and password. For archives of several items. An item that is not there is a failure in any case.
    [[nodiscard]] static bool addItem(Morvane::ZipArchiver& archiver, const QString& item,
                                      const QString& baseFolder, Morvane::ZipNames names,
                                      const ZipRun& run = {});

    // Ends such an archive and puts it in its place, unless everything that was to be packed was left out.
    [[nodiscard]] static bool finish(Morvane::ZipArchiver& archiver, const ZipRun& run = {});
};
