#pragma once

#include "foundation/system/PFileHandle.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <cstdint>

namespace Morvane
{
// Something of the file system that is to be packed.
//
// A link counts as what it leads to. Only files are opened: a pipe or a device would make whoever opens it
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

    // Looks what there is, and takes note of its date and attributes.
    Kind look();

    // Opens a file for reading and takes note of its size. False when it can't be opened or is none.
    [[nodiscard]] bool open();

    // Reads the next bytes: how many came, 0 at the end, -1 when they can't be read.
    int read(char* bytes, int size);

    // Goes back to the first byte.
    [[nodiscard]] bool rewind();

    // Whether the open file is another one than it was when it was opened, by its size and date. Also when
    // the system does not tell; then there is a reason.
    bool hasChanged();

    const QString& getPath() const { return mPath; }

    // Why a call failed, in the system's words or ours; empty before one did.
    const QString& getReason() const { return mReason; }

    qint64 getSize() const { return mSize; }
    QDateTime getModified() const { return QDateTime::fromMSecsSinceEpoch(mModified); }
    bool isFolder() const { return mIsFolder; }
    bool isReadOnly() const { return mIsReadOnly; }

    // The half of an entry's attributes in which systems like Unix keep the kind and the rights of a file; 0
    // on systems that have none.
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

// The names of what is in a folder, hidden files included, in their order. False, and the reason, when not
// all of them can be read.
[[nodiscard]] bool listSources(const QString& folder, QStringList& names, QString& reason);

// The system in the high byte of an entry's "made by" field, which tells how its attributes are to be read.
uint16_t getMadeBy();
}  // namespace Morvane
