#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/prefs/GPrefGroups.h"

#include <cstdint>

// What the user chose for one export. The tool fills it and sends it to the action as a signal.
struct GCPTSaveAsProperties
{
    // Messages of the signal.
    static constexpr int32_t cRunMessage = 106;     // run the export with these properties
    static constexpr int32_t cCancelMessage = 107;  // end the running export; the properties are not used

    GString hopboxKey;   // in the registry
    GString hopboxName;  // what the ticket, the work folder and messages call the Hopbox

    bool hasPageRange = false;
    GString pageRange;  // by the page numbers that the user sees, such as "1-5,8"

    bool includesFilePackage = false;

    // The number of the build of the Hopbox application (HopboxRegistry::GetCacheEntryNumber); decides in
    // which form a file package is sent.
    int32_t buildNumber = 0;

    // The settings that override the job options: keys and values of the project settings' group
    // HopboxProject::GetPlugInGroup.
    GPrefGroup outputSettings;

    // The Hopbox's job options file; set by the action while it runs.
    GPathName jobOptions;
};
