#pragma once

#include "foundation/system/PFileHandle.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace Morvane
{
// A file or folder that is to be packed.
//
// A link counts as what it leads to. Only files are opened: opening a pipe or a device could make the program
// wait, or worse. Not for several threads at once.
class ZipSource
{
public:
    enum class Kind
    {
        File,
        Folder,
        LinkToFolder,
        LinkToNothing,
        Special,  // a pipe, a socket or a device
        Missing,
        Unknown  // the system does not tell
    };

    explicit ZipSource(const QString& path) : mPath(path) {}

    // Finds out what is at the path, and notes its date and attributes.
    Kind look();

    // Opens a file for reading and notes its size. False when it can't be opened or is not a file.
    [[nodiscard]] bool open();

    // Reads the next bytes. Gives how many were read, 0 at the end, -1 when they can't be read.
    int read(char* bytes, int size);

    // Goes back to the first byte.
    [[nodiscard]] bool rewind();

    // Whether the open file has changed since it was opened, judged by its size and date. Also true when the
    // system does not tell; then there is a reason.
    bool hasChanged();

    const QString& getPath() const { return mPath; }

    // Why a call failed, in the system's words or ours; empty before one did.
    const QString& getReason() const { return mReason; }

    qint64 getSize() const { return mSize; }
    QDateTime getModified() const { return QDateTime::fromMSecsSinceEpoch(mModified); }
    bool isFolder() const { return mIsFolder; }
    bool isReadOnly() const { return mIsReadOnly; }

    // The half of an entry's attributes in which Unix-like systems keep the kind and the rights of a file; 0
    // on other systems.
    uint32_t getUnixAttributes() const { return mUnixAttributes; }

private:
    template <typename Status>
    void takeNote(const Status& status);
    bool failBySystem();

    const QString mPath;
    PFileHandle mFile;
    QString mReason;
    qint64 mSize = 0;
    qint64 mModified = 0;  // milliseconds since 1970, UTC; the time zone is looked up where it is asked for
    uint32_t mUnixAttributes = 0;
    bool mIsFolder = false;
    bool mIsReadOnly = false;
};

// The names in a folder, including hidden files, in sorted order. False, and the reason, when not all of them
// can be read.
[[nodiscard]] bool listSources(const QString& folder, QStringList& names, QString& reason);

// The system in the high byte of an entry's "made by" field. It tells how the entry's attributes must be
// read.
uint16_t getMadeBy();
}  // namespace Morvane
