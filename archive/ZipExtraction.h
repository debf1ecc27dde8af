#pragma once

#include "archive/ZipEntry.h"

#include <QByteArray>
#include <QStringList>
#include <QVector>

#include <functional>

namespace Morvane
{
class ZipDestination;
class ZipReader;

// How entries are to be extracted.
struct ZipExtractionOptions
{
    QVector<QByteArray> passwords = {QByteArray()};  // forms of one, tried in this order; never empty
    int mode = 0;             // added to the rights of each file and folder, the nine bits of a file mode
    int chunkSize = 4096;     // bytes that are read and written at a time
    bool isFlat = false;      // files go straight into the destination, under the last part of their names
    bool keepsDates = false;  // files get the entry's date

    // Called with the number of bytes of each chunk that was written; if it gives false, the extraction ends.
    // The number is negative when bytes are taken back because an entry begins again with another form of the
    // password. May be empty.
    std::function<bool(qint64 bytes)> onWritten;
};

// How far the extraction of an entry came.
struct ZipOutcome
{
    enum class Step
    {
        Done,
        CheckEntry,  // refused as it stands in the archive
        MakeFolder,
        OpenEntry,
        MakeFile,
        ReadEntry,
        WriteFile,
        CloseEntry,
        GivenUp
    };

    Step failedAt = Step::Done;
    QString path;    // the file or folder that the entry becomes
    QString reason;  // for the end of a sentence; empty if the step says enough

    bool isDone() const { return failedAt == Step::Done; }
};

// Extracts the current entry of an archive. A failure leaves no new file, and does not change a file that was
// there before.
//
// Entries of Unix-like systems have rights, which are added to those of a new file. An entry's rights never
// let the group or others write, so that an archive can't open a file to strangers; only `mode` can. The only
// right that is taken away is the right to write: when the entry is read-only and `mode` does not give this
// right to the owner.
ZipOutcome extractEntry(ZipReader& reader, int entryIndex, ZipDestination& destination,
                        const ZipExtractionOptions& options);

// The parts of the path at which extractEntry() puts an entry; empty when it refuses the entry or, with
// isFlat, skips it.
QStringList findTarget(const ZipEntry& entry, bool isFlat);

// Reads the content of the current entry into memory, if it does not have more bytes than the limit.
ZipOutcome readEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords, qint64 limit,
                            QByteArray& content);

// Reads the content of the current entry without keeping it, to see whether it is whole. `onRead` is called
// with the number of bytes of each chunk; if it gives false, the reading ends. It may be empty.
ZipOutcome checkEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords,
                             const std::function<bool(qint64 bytes)>& onRead);
}  // namespace Morvane
