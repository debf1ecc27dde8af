#pragma once

#include "export/ReservedOutput.h"
#include "plugin/host/IDFile.h"

#include <functional>
#include <optional>

// One step of an export, which the host does with a command: what it makes in a folder, and why it failed. A
// step gives the host's objects back with itself, whatever happens. Used once, on the host's main thread.
class ExportStep
{
public:
    virtual ~ExportStep();
    ExportStep(const ExportStep&) = delete;
    ExportStep& operator=(const ExportStep&) = delete;

    // Does what is to be done, in order; the first failure ends it, with the error text if there is one for
    // it. Raises what the foundation raises.
    [[nodiscard]] virtual bool Execute() = 0;

    const GString& GetErrorText() const { return mErrorText; }

    // What the step has made; empty when it has made nothing. A step may fail after it has.
    const GPathName& GetOutputPath() const { return mOutputPath; }

protected:
    // The folder, which need not be there yet, outlives the step.
    explicit ExportStep(const GPathName& folder) : mFolder(folder) {}

    // Gives false, with the error text of a code and what follows it.
    [[nodiscard]] bool Fail(uint32_t code, const GString& detail = GString());

    // Gives false, with an error text as it stands.
    [[nodiscard]] bool FailWith(const GString& text);

    // Runs calls of the host's that give whether they have succeeded. What the host turns out not to have is
    // the failure of a code.
    [[nodiscard]] bool CallHost(uint32_t missing, const std::function<bool()>& calls);

    // Reserves what the step makes, in the folder. It goes with the step unless it is kept.
    IDFile ReserveOutput(const GString& name, ReservedOutput::Kind kind);

    // What is reserved, for which the caller vouches, has become the output.
    void KeepOutput();
    const GPathName& GetReservedPath() const { return mReserved->GetPathName(); }

private:
    const GPathName& mFolder;
    GString mErrorText;
    GPathName mOutputPath;
    std::optional<ReservedOutput> mReserved;
};
