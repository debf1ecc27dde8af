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
// The archive may be hostile: nothing is written outside the folder that the caller names. Settings may not
// be larger than cMaximumSettingsSize, job options not larger than cMaximumJobOptionsSize. Folder entries are
// ignored, so that an archive from any zip tool can be used.
//
// Operations never raise; the reason of a failure is a text for the user. Each operation opens the archive
// again. An object is used by one thread.
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

    // Extracts the job options below a folder, and gives the path of the extracted file. The job options are
    // the first file whose name contains "PrinterFiles/". The folder is made if it is missing. A failure
    // leaves nothing in it.
    GResult ExtractJobOptions(const GPathName& folder, GPathName& jobOptions) const;

    // Reads the settings and writes them over those that the module holds. Also fails when the archive has no
    // job options. A failure leaves the module unchanged.
    // If the settings are damaged, the readable part is read, and GetDamagePosition tells where the damage
    // begins.
    GResult ReadSettings(GPrefModule& settings);

    // The byte of the settings at which the damage begins, as the last successful ReadSettings found it; -1
    // when there was no damage.
    int64_t GetDamagePosition() const { return mDamagePosition; }

    // Replaces the settings in the archive, which must have job options. The archive is replaced whole, and
    // its other files stay as they were; a failure leaves it as it was. If its settings are damaged, a copy
    // of the archive is kept beside it first (see GDamagedCopies). If two processes write at the same time,
    // the settings of the last one stay.
    GResult WriteSettings(const GPrefModule& settings);

    // The same, and also replaces the job options in the archive.
    GResult Replace(const GPathName& jobOptions, const GPrefModule& settings);

    // In two steps, for callers that change something else too. Prepare writes the new archive beside the old
    // one, with these settings and, unless the path is empty, these job options. PutInPlace replaces the old
    // one. Without that call the old archive stays and the new one is removed.
    GResult Prepare(const GPathName& jobOptions, const GPrefModule& settings);
    GResult PutInPlace();

    // Makes the archive from settings and a job options file, and replaces one that is there. Its folder must
    // exist.
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
