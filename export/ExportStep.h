#pragma once

#include "export/ReservedOutput.h"
#include "plugin/host/IDFile.h"

#include <functional>
#include <optional>

// One step of an export, which the host does with a command: it knows what was made in a folder, or why the
// step failed. When the step is deleted, it always gives the host's objects back. Used once, on the host's
// main thread.
class ExportStep
{
public:
    virtual ~ExportStep();
    ExportStep(const ExportStep&) = delete;
    ExportStep& operator=(const ExportStep&) = delete;

    // Does the work in order. The first failure ends it, and sets the error text if there is one for it.
    // Raises what the foundation raises.
    [[nodiscard]] virtual bool Execute() = 0;

    const GString& GetErrorText() const { return mErrorText; }

    // What the step has made; empty when it has made nothing. A step may fail after it has made something.
    const GPathName& GetOutputPath() const { return mOutputPath; }

protected:
    // The folder need not exist yet. The path must outlive the step.
    explicit ExportStep(const GPathName& folder) : mFolder(folder) {}

    // Gives false, and sets the error text of a code, followed by `detail`.
    [[nodiscard]] bool Fail(uint32_t code, const GString& detail = GString());

    // Gives false, and sets this error text unchanged.
    [[nodiscard]] bool FailWith(const GString& text);

    // Runs calls to the host; they give whether they have succeeded. If the host does not have an operation,
    // the step fails with the code `missing`.
    [[nodiscard]] bool CallHost(uint32_t missing, const std::function<bool()>& calls);

    // Reserves a name in the folder for what the step makes. What is there is removed with the step unless it
    // is kept.
    IDFile ReserveOutput(const GString& name, ReservedOutput::Kind kind);

    // Makes the reserved file or folder the output. The caller must have checked it.
    void KeepOutput();
    const GPathName& GetReservedPath() const { return mReserved->GetPathName(); }

private:
    const GPathName& mFolder;
    GString mErrorText;
    GPathName mOutputPath;
    std::optional<ReservedOutput> mReserved;
};
