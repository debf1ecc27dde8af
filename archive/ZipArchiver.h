#pragma once

#include "archive/ZipLog.h"

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class GDurableFile;

namespace Morvane
{
class ZipOutput;
class ZipReader;
class ZipSource;

// Whether a new archive is made, which replaces an existing one, or entries are added to an existing archive.
enum class ZipStart
{
    Create,
    Append
};

// How the names of entries are written. In both forms this layer reads every name back exactly.
enum class ZipNames
{
    NameField,  // in the OEM code page, "_" for what it lacks, beside the name field with the exact name.
                // Some tools stumble over the field: docs/formats/zip-name-field.md tells which
    Plain       // in UTF-8 and marked so; for archives that are meant for other tools
};

// A zip archive being written.
//
// It is written under another name beside its place and flushed to disk. FinishWriting() puts the whole
// archive in its place, with the rights of the old one (GDurableFile does this). If something fails before,
// if the object is deleted without FinishWriting(), or if the process is killed, only what was there before
// remains.
//
// No operation throws; each gives whether it succeeded, and reports its failure to the log. Once an entry has
// failed in the middle of its content, the archive can't be finished any more, see isWriting(). If a source
// can't be opened, that is reported before anything is written for it, and the archive can go on without it.
// An object belongs to one thread at a time.
class ZipArchiver
{
public:
    // The writer's own level, see StartWriting().
    static constexpr int cStartLevel = -1;

    static constexpr int cBestLevel = 9;

    explicit ZipArchiver(const QString& path);
    ~ZipArchiver();
    ZipArchiver(const ZipArchiver&) = delete;
    ZipArchiver& operator=(const ZipArchiver&) = delete;

    // Begins to write. The password (empty for none) is used for every entry that is added without its own
    // password; it may contain only Latin-1 characters. The level, 0 (stored) to 9, is used for every entry
    // that is added with cStartLevel. Appending to a missing archive creates it.
    [[nodiscard]] bool StartWriting(ZipStart start, const QString& password, int level);

    // Adds a file, or a folder without its contents, under a name with '/' or '\' between its parts. A name
    // that the archive has already is refused. The entry gets the file's date and rights; for a link, it gets
    // the content of the file that the link leads to. It gets no name field if it has about 4 GiB or more, or
    // begins that far into the archive, because the field would hide the sizes from every reader.
    //
    // If a file grows meanwhile, only its first size is packed; if it changes, the archive may hold a
    // mixture. Both are reported as a failure, and the archive can go on.
    [[nodiscard]] bool AddFile(const QString& sourcePath, const QString& nameInArchive, int level,
                               ZipNames names, const QString& password);

    // Adds a file under its path relative to the base folder.
    [[nodiscard]] bool AddFileWithIerarchy(const QString& sourcePath, const QString& baseFolder, int level,
                                           ZipNames names);

    // Ends the archive and flushes it to the disk beside its place, so that FinishWriting() has only one step
    // to do. For callers that must change something else at the same time. Nothing can be added after this.
    [[nodiscard]] bool EndWriting();

    // Ends the archive, unless EndWriting() did, and puts it in its place.
    [[nodiscard]] bool FinishWriting();

    // Whether entries can be added: writing has begun, and nothing has failed that can't be taken back.
    bool isWriting() const { return mHandle != nullptr; }

    // How many entries were added since StartWriting().
    int getAddedCount() const { return mAddedCount; }

    // Whether this is the path of the archive, or of the file that it is written to until it is finished.
    // Code that packs a whole folder skips both.
    bool isOwnFile(const QString& path) const;

    // Where failures are reported; null for the process-wide trace.
    void setLogInterface(ILogInterface* log) { mLog = ZipLog(log); }

    // Sets a function that is called with the number of file bytes that were packed since the last call,
    // often 0. If it gives false, the current operation and the archive are given up.
    void setProgress(std::function<bool(qint64 bytes)> progress) { mProgress = std::move(progress); }

    // The text of the last failure; empty before there was one.
    const QString& GetLastError() const { return mLastError; }

private:
    struct Entry;
    struct Closer
    {
        void operator()(void* handle) const;
    };

    [[nodiscard]] bool openArchive(ZipStart start);
    [[nodiscard]] bool copyOldEntries();
    [[nodiscard]] bool prepareEntry(const ZipSource& source, const QString& nameInArchive, ZipNames names,
                                    Entry& entry);
    [[nodiscard]] bool openSource(ZipSource& source, Entry& entry);
    [[nodiscard]] bool writeEntry(ZipSource& source, const Entry& entry);
    [[nodiscard]] bool openEntry(const Entry& entry);
    [[nodiscard]] bool addContent(ZipSource& source, const Entry& entry);
    [[nodiscard]] bool checkSource(ZipSource& source, const Entry& entry);
    bool goesOn(qint64 bytes) const { return !mProgress || mProgress(bytes); }
    [[nodiscard]] bool endArchive();
    [[nodiscard]] bool reach(void (GDurableFile::*step)(), const char* source, bool isReady);
    void drop();
    [[nodiscard]] bool giveUp(const QString& text);
    [[nodiscard]] bool fail(const char* source, const QString& text);

    const QString mPath;
    std::unique_ptr<GDurableFile> mFile;  // each of these works on the one before it
    std::unique_ptr<ZipReader> mOld;      // the archive that is added to
    std::unique_ptr<ZipOutput> mOutput;
    std::unique_ptr<void, Closer> mHandle;
    QSet<QString> mNames;
    QByteArray mComment;  // of the archive that is added to
    QByteArray mChunk;
    QByteArray mPassword;
    int mLevel = 0;
    int mAddedCount = 0;
    int mOldCount = 0;
    bool mHasLarge = false;
    std::function<bool(qint64 bytes)> mProgress;
    ZipLog mLog;
    QString mLastError;
};
}  // namespace Morvane
