#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/GFileSystemBase.h"

// A fresh folder in the temporary folder, for its owner only, that goes with this object and all that it
// holds.
class TemporaryFolder
{
public:
    // Raises when the folder can't be made.
    TemporaryFolder()
        : mPath(GFileSystemBase::CreateUniqueFolder(GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary),
                                                    QStringLiteral("XXXXXXXX")))
    {
    }
    ~TemporaryFolder() { GFileSystemBase::TryToRemoveFolder(mPath); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const GPathName& GetPathName() const { return mPath; }

private:
    GPathName mPath;
};
