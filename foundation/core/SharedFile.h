#pragma once

#include "foundation/core/GResult.h"

#include <QByteArray>

#include <cstdint>

class QFile;

// The one way in which files that people and other programs can put there are opened for reading: settings,
// tables, string files, job options, archives.
//
// What is no file is refused at once, with the reason in plain words, and nothing of it is read: a folder, a
// pipe, a device, a socket, a link that leads nowhere or in a circle, a file that is larger than any that
// makes sense here. On Windows the others may go on writing, replacing and deleting the file meanwhile. Any
// thread.

// How an opening ended.
enum class [[nodiscard]] FileOpening{
    cOpen,
    cMissing,  // the system says that nothing bears the name; only this may be taken for "not there yet"
    cRefused   // something bears the name, or the system could not even look; the reason says which
};

// The largest settings, tables, string files and job options, in bytes.
constexpr int64_t cLargestTextFile = int64_t{256} << 20;
constexpr int64_t cNoLargestFile = INT64_MAX;

// Opens the file of the name that `file` bears, unbuffered or not as `file` is used; `largest` is in bytes.
// Sets the reason unless the file is open.
FileOpening OpenSharedForReading(QFile& file, int64_t largest, GString& reason);

// Whether the system says that nothing bears the name. False also where it could not look: whoever opens the
// file then learns why.
bool IsFileMissing(const GString& path);

// Reads an open file to its end. Fails, with no content, when a read fails on the way: QFile::readAll() takes
// a read that breaks off for the end of the file.
GResult ReadToEnd(QFile& file, QByteArray* content);

// Opens a file and reads all of it. Fails, with no content, when it can't be opened or read, or has more
// bytes than `largest`.
GResult ReadSharedFile(const GString& path, int64_t largest, QByteArray* content);

// The reason for a file of too many bytes.
GString GetTooLargeReason(int64_t size, int64_t largest);
