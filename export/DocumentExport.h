#pragma once

#include "export/GCPTSaveAsProperties.h"
#include "export/PlacedJobOptions.h"
#include "export/WorkFolder.h"
#include "plugin/host/HostPtr.h"

#include <optional>

class ICommand;
class IDocument;
class IPDFExportPreferences;
class ISystemFileData;

// One PDF of the document in front. The host's objects are given back with this object, whatever happens.
// Used once, on the host's main thread.
class DocumentExport
{
public:
    // Both outlive this object.
    DocumentExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder);
    ~DocumentExport();

    // Runs the steps; the first that fails ends it, with the error text. Raises what the foundation raises.
    bool Execute();

    const GString& GetErrorText() const { return mErrorText; }
    const GPathName& GetPDFPath() const { return mPDFPath; }

private:
    bool CreateCommand();
    bool ApplyJobOptions();
    bool TakeOutputFileData();
    bool TakeDocument();
    bool SaveDocument();
    bool SetOutputFile();
    bool SetPages();
    bool CheckFonts();
    bool RunCommand();

    bool Fail(uint32_t code, const GString& detail = GString());

    const GCPTSaveAsProperties& mProperties;
    const GPathName& mWorkFolder;
    GString mErrorText;
    GPathName mPDFPath;

    std::optional<PlacedJobOptions> mJobOptions;
    std::optional<ReservedOutput> mOutput;
    HostPtr<ICommand> mCommand;
    HostPtr<IPDFExportPreferences> mPreferences;
    HostPtr<ISystemFileData> mFileData;
    HostPtr<IDocument> mDocument;
};
