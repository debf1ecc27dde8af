#pragma once

#include "foundation/core/GResult.h"

#include <QByteArray>

#include <cstdint>

class QFile;

// The only way in which we open files for reading that people or other programs can put there: settings,
// tables, string files, job options, archives.
//
// Some things are refused at once, with the reason in plain words, and nothing of them is read: a folder, a
// pipe, a device, a socket, a link that leads nowhere or in a circle, and a file that is larger than makes
// sense here. On Windows, others may still write, replace and delete the file while it is open. Any thread.

// How an opening ended.
enum class [[nodiscard]] FileOpening{
    cOpen,
    cMissing,  // the system says that nothing has the name; only this means "not there yet"
    cRefused   // something has the name, or the system can't tell; the reason says which
};

// The largest settings, tables, string files and job options, in bytes.
constexpr int64_t cLargestTextFile = int64_t{256} << 20;
constexpr int64_t cNoLargestFile = INT64_MAX;

// Opens the file whose name is set in `file`; `largest` is in bytes. Sets the reason unless the file is open.
FileOpening OpenSharedForReading(QFile& file, int64_t largest, GString& reason);

// Whether the system says that nothing has the name. Also false if the system can't tell: opening the file
// then gives the reason.
bool IsFileMissing(const GString& path);

// Reads an open file to its end. Fails, with no content, when a read fails on the way: QFile::readAll()
// treats a failed read as the end of the file.
GResult ReadToEnd(QFile& file, QByteArray* content);

// Opens a file and reads all of it. Fails, with no content, when it can't be opened or read, or has more
// bytes than `largest`.
GResult ReadSharedFile(const GString& path, int64_t largest, QByteArray* content);

// The reason for refusing a file with too many bytes.
GString GetTooLargeReason(int64_t size, int64_t largest);
