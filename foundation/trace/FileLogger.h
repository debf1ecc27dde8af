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
// text are written as "\n", "\r", "\t" or "\xHH", and a backslash as "\\", so that no text can pass for a
// line of its own. A line goes out in one write, so that several processes on POSIX may share the file.
//
// The file is for its owner only. One that has grown beyond 8 MB is set aside under its name with ".old"
// added when it is next opened; the one that was set aside before goes. Any thread.
class FileLogger : public ILogInterface
{
public:
    // Opens the file, or makes it; its folder must be there. What can't be opened takes no lines.
    explicit FileLogger(const QString& path);

    bool isOpen() const { return mFile.isOpen(); }

    void log(LogLevel level, const QString& source, const QString& message) noexcept override;

private:
    std::mutex mMutex;  // guards mFile
    QFile mFile;
};
}  // namespace Morvane
