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

// Whether an archive is made anew, in place of one that may be there, or added to.
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
// It is written beside its place, flushed to disk and put there whole by FinishWriting(), with the rights of
// the one that was there (see GDurableFile, which does it). Whatever fails before, and the end of the
// object's life without FinishWriting(), leaves what was there before and nothing else; so does a kill.
//
// No operation throws; each gives whether it succeeded, and reports its failure to the log. Once an entry has
// failed in the middle of its content, the archive can't be finished any more, see isWriting(). Sources that
// can't be opened are told before anything is written for them, and the archive can go on without them. An
// object belongs to one thread at a time.
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

    // Begins to write. The password (empty for none) is that of every entry that is added without one of its
    // own, and has to be one of Latin-1; the level, 0 (stored) to 9, that of every entry added with
    // cStartLevel. Appending to an archive that is not there creates it.
    [[nodiscard]] bool StartWriting(ZipStart start, const QString& password, int level);

    // Adds a file, or a folder without its contents, under a name with '/' or '\' between its parts. A name
    // that the archive has already is refused. The entry gets the file's date and rights, the content of what
    // a link leads to, and no name field when it has about 4 GiB or more, or lies that far into the archive:
    // the field would hide the sizes from every reader.
    //
    // A file that grows meanwhile is packed as far as it went at first, and one that changes may be a mixture
    // in the archive: that is told as a failure, too, and the archive can go on.
    [[nodiscard]] bool AddFile(const QString& sourcePath, const QString& nameInArchive, int level,
                               ZipNames names, const QString& password);

    // Adds a file under its path relative to the base folder.
    [[nodiscard]] bool AddFileWithIerarchy(const QString& sourcePath, const QString& baseFolder, int level,
                                           ZipNames names);

    // Ends the archive and brings it to the disk beside its place, so that FinishWriting() has one step to
    // do. For whoever has something else to change with it. Nothing can be added any more.
    [[nodiscard]] bool EndWriting();

    // Ends the archive, unless EndWriting() did, and puts it in its place.
    [[nodiscard]] bool FinishWriting();

    // Whether entries can be added: writing has begun, and nothing has failed that can't be taken back.
    bool isWriting() const { return mHandle != nullptr; }

    // How many entries were added since StartWriting().
    int getAddedCount() const { return mAddedCount; }

    // Whether a path is that of the archive, or of the file that it is written to until it is finished: what
    // goes through a folder leaves both out.
    bool isOwnFile(const QString& path) const;

    // Where failures are reported; null for the process-wide trace.
    void setLogInterface(ILogInterface* log) { mLog = ZipLog(log); }

    // Called with the bytes of files that were packed since the last call, often with 0. False gives up what
    // is being done, and the archive.
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
