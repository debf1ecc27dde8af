#pragma once

#include "foundation/core/GPathName.h"

#include <QFileInfo>

#include <vector>

// The folder into which jobs are copied, each under a name that was free.
//
// What a ticket names is taken as hostile. A job is a plain file, or a folder, of which plain files and
// folders are copied and everything else (links, pipes, devices) is passed over. Of a file no more is copied
// than it says to hold, so that one without an end does no harm. A job of more than cMaximumBytes or
// cMaximumItems is refused, and so is a folder that the inbox lies in. What fails leaves nothing in the
// inbox.
class JobInbox
{
public:
    static constexpr qint64 cMaximumBytes = qint64(16) << 30;
    static constexpr size_t cMaximumItems = 100000;

    // Makes the folder when it is missing. Raises when it can't be made.
    explicit JobInbox(const GPathName& folder);

    // Copies the job that lies at a location, a native path or an encoded `file` URL, and gives the path of
    // the copy. Raises a GException that says why, when it can't be copied.
    GPathName Take(const GString& location) const;

private:
    GPathName TakeFile(const QFileInfo& source, const GString& name) const;
    GPathName TakeFolder(const QFileInfo& source, const GString& name) const;

    GPathName mFolder;
};
