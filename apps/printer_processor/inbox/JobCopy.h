#pragma once

#include "foundation/core/GException.h"
#include "foundation/core/GPathName.h"

#include <QStringList>

#include <atomic>

// The job is at fault, today and tomorrow.
class RefusedJob : public GCustomException
{
public:
    explicit RefusedJob(const GString& text);
};

// Copies what a ticket names, which is taken as hostile. A job is a plain file, or a folder, of which plain
// files and folders are copied and everything else (links, pipes, devices) is passed over. A file that
// somebody writes to meanwhile is no copy of anything: that raises.
namespace JobCopy
{
constexpr qint64 cMaximumBytes = qint64(16) << 30;
constexpr size_t cMaximumItems = 100000;

struct Source
{
    GString path;  // where it is, with all links resolved
    GString name;  // under which the ticket knows it
    bool isFolder;
};

// Finds the job that lies at a location, a native path or an encoded `file` URL. Raises a RefusedJob when it
// names no file or folder of this machine, or a folder that the inbox lies in; another GException when the
// system could not look.
Source Find(const GString& location, const GPathName& inbox);

// Copies the job to a path that nothing bears, flushed to disk. Raises a RefusedJob when it holds more than
// cMaximumBytes or cMaximumItems, another GException for everything else, also when `isStopped` has become
// true. A part may be there then. Gives what was passed over, as paths in the job with '/' separators.
QStringList Copy(const Source& source, const GPathName& target, const std::atomic<bool>& isStopped);
}  // namespace JobCopy
