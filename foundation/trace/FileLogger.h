#pragma once

#include "foundation/trace/ILogInterface.h"

#include <QFile>

#include <mutex>

namespace Morvane
{
// Appends lines to a file, in UTF-8, one line of the file for each call:
//
//     2026-03-01T09:15:02.118Z 4711/3 ERROR FileHandler::removeFile: Can't remove file: /tmp/a
//
// time in UTC, process and a short number for the thread, level, source, message. Control characters inside a
// text are written as "\n", "\r", "\t" or "\xHH", and a backslash as "\\", so that no text can look like a
// separate line. A line is written in one call, so that several processes on POSIX may share the file.
//
// The file is for its owner only. If it is larger than 8 MB when it is opened, it is renamed first: ".old" is
// added to its name, and an older file of that name is removed. Any thread.
class FileLogger : public ILogInterface
{
public:
    // Opens the file, or makes it; its folder must exist. If it can't be opened, lines are dropped.
    explicit FileLogger(const QString& path);

    bool isOpen() const { return mFile.isOpen(); }

    void log(LogLevel level, const QString& source, const QString& message) noexcept override;

private:
    std::mutex mMutex;  // guards mFile
    QFile mFile;
};
}  // namespace Morvane
