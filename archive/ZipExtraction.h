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
    QVector<QByteArray> passwords = {QByteArray()};  // forms of one, tried in this order; never none
    int mode = 0;             // added to the rights of each file and folder, the nine bits of a file mode
    int chunkSize = 4096;     // bytes that are read and written at a time
    bool isFlat = false;      // files go straight into the destination, under the last part of their names
    bool keepsDates = false;  // files get the entry's date

    // Told of the bytes of each chunk that was written; false gives the extraction up. A negative number
    // takes bytes back, when an entry begins again with another form of the password. May be empty.
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
    QString reason;  // for the end of a sentence; empty where the step says all

    bool isDone() const { return failedAt == Step::Done; }
};

// Extracts the current entry of an archive. What fails leaves no file behind; a file that was there before
// stays what it was.
//
// Rights come from entries of Unix-like systems and are added to those of a new file, and none of them lets
// the group or others write: an archive can't open a file to strangers, `mode` can. Only the right to write
// goes, where the entry is read-only and `mode` does not give it to the owner.
ZipOutcome extractEntry(ZipReader& reader, int entryIndex, ZipDestination& destination,
                        const ZipExtractionOptions& options);

// The parts of the path at which extractEntry() puts an entry; empty when it refuses it or, with isFlat,
// passes it over.
QStringList findTarget(const ZipEntry& entry, bool isFlat);

// Reads the content of the current entry into memory, as long as it has no more bytes than the limit.
ZipOutcome readEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords, qint64 limit,
                            QByteArray& content);

// Reads the content of the current entry and keeps nothing of it: whether it is whole. `onRead` is told of
// the bytes of each chunk; false gives up. May be empty.
ZipOutcome checkEntryContent(ZipReader& reader, const QVector<QByteArray>& passwords,
                             const std::function<bool(qint64 bytes)>& onRead);
}  // namespace Morvane
