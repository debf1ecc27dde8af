#pragma once

#include "export/GCPTSmartPathName.h"

// A Hopbox's job options file among the host's PDF settings: a read-only copy with its own name, which is
// removed with this object. For the main thread.
class PlacedJobOptions
{
public:
    // Makes the copy, and the folder if it is missing. A failure leaves no copy, and GetError gives the
    // reason.
    explicit PlacedJobOptions(const GPathName& jobOptions);

    bool IsPlaced() const { return !mFile.GetPathName().IsEmpty(); }
    const GPathName& GetPathName() const { return mFile.GetPathName(); }

    // Why the copy could not be made; empty when it was made.
    const GString& GetError() const { return mError; }

    // The name under which the host lists the settings: the file's name without its extension, in square
    // brackets because the file is not writable.
    GString GetSettingsName() const;

private:
    GCPTSmartPathName mFile;
    GString mError;
};
