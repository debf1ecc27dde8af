#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/core/GResult.h"

#include <memory>

class GPrefModule;

namespace Morvane
{
class ZipArchive;
}

// The project archive that each Hopbox carries: a zip archive, protected by a password that only this class
// knows, with the Hopbox's settings and its job options. docs/formats/registry.md has the layout.
//
// The archive is taken as hostile: nothing is written outside the folder that the caller names, and neither
// settings nor job options may be larger than cMaximumSettingsSize and cMaximumJobOptionsSize. Folder entries
// are passed over, so that an archive from any zip tool serves.
//
// Operations never raise; the reason of a failure is for the user. Each opens the archive anew. An object is
// used by one thread.
class HopboxProject
{
public:
    static constexpr int64_t cMaximumSettingsSize = 16 << 20;     // bytes
    static constexpr int64_t cMaximumJobOptionsSize = 256 << 20;  // bytes

    // The group of the settings in which the plug-in finds what it needs of a Hopbox.
    static const GBuffer& GetPlugInGroup();

    explicit HopboxProject(const GPathName& archive);
    ~HopboxProject();
    HopboxProject(const HopboxProject&) = delete;
    HopboxProject& operator=(const HopboxProject&) = delete;

    const GPathName& GetPathName() const { return mPath; }

    // Extracts the job options, the first file whose name holds "PrinterFiles/", below a folder, which is
    // made when it is missing, and gives the path of the file there. A failure leaves nothing in it.
    GResult ExtractJobOptions(const GPathName& folder, GPathName& jobOptions) const;

    // Reads the settings and puts them over those that the module holds. Fails, with the module unchanged,
    // also when the archive has no job options.
    // Where they are damaged, what could be read of them is read, and GetDamagePosition tells.
    GResult ReadSettings(GPrefModule& settings);

    // The byte of the settings where the damage begins that the last successful ReadSettings met; -1 when
    // there was none.
    int64_t GetDamagePosition() const { return mDamagePosition; }

    // Puts these settings in place of the archive's, which must have job options. The archive is replaced
    // whole, with its other files as they were; a failure leaves it as it was. One whose settings are damaged
    // is kept beside it first (see GDamagedCopies). Of two writers at once, the last one's settings stay.
    GResult WriteSettings(const GPrefModule& settings);

    // The same, with other job options in place of the archive's too.
    GResult Replace(const GPathName& jobOptions, const GPrefModule& settings);

    // In two steps, for callers that change something else too. Prepare writes the new archive beside the old
    // one, with these settings and, unless the path is empty, these job options. PutInPlace replaces the old
    // one. Without it the old archive stays and the new one goes.
    GResult Prepare(const GPathName& jobOptions, const GPrefModule& settings);
    GResult PutInPlace();

    // Makes the archive from settings and a job options file, in place of one that is there. Its folder must
    // be there.
    GResult Create(const GPathName& jobOptions, const GPrefModule& settings) const;

private:
    class Writer;

    void KeepDamaged() const;
    GResult HasJobOptions() const;
    GResult FindJobOptions(Morvane::ZipArchive& archive) const;
    GResult FindSettings(Morvane::ZipArchive& archive, GBuffer& text) const;

    GPathName mPath;
    std::unique_ptr<Writer> mPrepared;
    int64_t mDamagePosition = -1;
};
