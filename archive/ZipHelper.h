#pragma once

#include "archive/ZipArchiver.h"
#include "archive/ZipEntry.h"
#include "archive/ZipLimits.h"

#include <QStringList>
#include <QVector>

#include <functional>

// Whether a whole archive is extracted with the folders of its entries, or every file straight into the
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

// What goes along with one operation; a default one asks for nothing.
struct ZipRun
{
    // Where failures are reported, line by line; null for the process-wide trace.
    Morvane::ILogInterface* log = nullptr;

    // What extraction may put on the disk. The sizes that the archive declares are added up beforehand, and
    // an archive beyond the limits is refused with the disk as it was.
    Morvane::ZipLimits limits;

    // Told, during extraction, of the bytes that are written and of all that there will be. False gives the
    // extraction up.
    std::function<bool(qint64 done, qint64 total)> progress;

    // With a list, what lies below a folder and can't be packed is added to it, and the rest is packed.
    // Without one it ends the packing, and what was at the archive's path stays. Either way the log names it.
    QStringList* leftOut = nullptr;
};

// Whole folders into archives, and whole archives into folders. Static operations that may run on any thread;
// each gives whether all went well, reports every failure to the log under the operation's name
// ("ZipHelper::doExtractCurrentFile"), and never throws.
//
// Extraction takes an archive for hostile: see Morvane::ZipArchive for what it refuses.
class ZipHelper
{
public:
    // Packs a file, or a folder with all that is below it, hidden files included. Names in the archive are
    // relative to the base folder; an empty one stands for the folder that holds the item. A link to a file
    // counts as the file. What can't be packed is links to folders and to nothing, pipes, sockets and
    // devices, what can't be read, and a file that changes meanwhile, see ZipRun::leftOut. The archive itself
    // is passed over. A failure leaves what was at the archive's path. `level` is 0 (stored) to 9; an empty
    // password encrypts nothing.
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

    // Extracts only the entries of these names. Ends at the first that fails; a name that the archive lacks
    // is a failure, too, told before anything is extracted.
    [[nodiscard]] static bool extractFiles(const QString& zipPath, const QStringList& names,
                                           const QString& destinationFolder, ZipPaths paths,
                                           const QString& password, int mode, const ZipRun& run = {});

    // The description of every entry, in the order of the archive. False when the archive can't be read to
    // its end; the list then holds what could be.
    [[nodiscard]] static bool getEntryList(const QString& zipPath, QVector<Morvane::ZipEntry>& entries,
                                           const ZipRun& run = {});

    // The bytes of all files below a folder, without hidden and system files and without folders that are
    // links.
    static qint64 getDirSize(const QString& folder);

    // Adds an item to an archive that is being written, as compressItem() does, with the archive's own level
    // and password. For archives of several items. An item that is not there is a failure in any case.
    [[nodiscard]] static bool addItem(Morvane::ZipArchiver& archiver, const QString& item,
                                      const QString& baseFolder, Morvane::ZipNames names,
                                      const ZipRun& run = {});

    // Ends such an archive and puts it in its place; not when all that was to be packed was left out.
    [[nodiscard]] static bool finish(Morvane::ZipArchiver& archiver, const ZipRun& run = {});
};
