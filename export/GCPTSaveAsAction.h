#pragma once

#include "export/GCPTAbstractAction.h"
#include "export/GCPTSaveAsProperties.h"
#include "foundation/core/GSignal.h"
#include "foundation/core/GSubject.h"

#include <mutex>

// Exports what the user has in front to a Hopbox. A derived class adds the steps that only the host can do.
//
// A run is synchronous, within Receive. Each step gives whether it succeeded; the first step that fails sets
// the error text and ends the run. An exception from the foundation in a step becomes the error text. The
// observers are told the result. For the main thread.
class GCPTSaveAsAction : public GCPTAbstractAction, public GReceiver<GCPTSaveAsProperties>, public GSubject
{
public:
    // Notifications to the observers, at the end of each run.
    static constexpr int32_t cSucceeded = 11;
    static constexpr int32_t cFailed = 12;
    static constexpr int32_t cCancelled = 13;  // failed after a cancel request

    ~GCPTSaveAsAction() override;

    // Runs the export or asks the running one to end: see GCPTSaveAsProperties. Without a Hopbox's name
    // nothing runs and the observers are not told. A request for a run is ignored while another run is going
    // on.
    void Receive(int32_t message, const GCPTSaveAsProperties& properties) override;

    // Runs the steps with the properties that were received last; gives whether they succeeded. Fails without
    // an error text when the action is not active.
    [[nodiscard]] bool Execute();

    // Whether a run is going on. This can be true when it is called from the host's events that a step
    // handles.
    bool IsRunning() const { return mIsRunning; }

    // Why the last run failed; empty when it did not fail, or when there is nothing to say about it.
    const GString& GetErrorText() const { return mErrorText; }

    // What the last run has produced; the path is empty for what it has not produced. The output path is the
    // last of them: the package folder when there is one.
    const GPathName& GetPDFPath() const { return mPDFPath; }
    const GPathName& GetPackagePath() const { return mPackagePath; }
    const GPathName& GetOutputPath() const { return mPackagePath.IsEmpty() ? mPDFPath : mPackagePath; }

protected:
    // Exports a PDF with the properties' job options below the work folder, which need not exist yet, and
    // sets the PDF's path.
    [[nodiscard]] virtual bool ExportPDF(const GCPTSaveAsProperties& properties,
                                         const GPathName& workFolder) = 0;

    // Makes the file package in a folder, which need not exist yet, and sets the package's path.
    [[nodiscard]] virtual bool CreatePackage(const GPathName& folder) = 0;

    // Sets the error text; gives false, the result of the step.
    [[nodiscard]] bool FailWith(const GString& text);

    void SetPDFPath(const GPathName& path) { mPDFPath = path; }
    void SetPackagePath(const GPathName& path) { mPackagePath = path; }

private:
    void Run();
    [[nodiscard]] bool RunSteps(GCPTSaveAsProperties& properties);
    [[nodiscard]] bool ObtainJobOptions(const GCPTSaveAsProperties& properties, const GPathName& folder,
                                        GPathName& jobOptions);

    // The properties come by a signal, and a cancel request may come while a run is going on on this thread.
    std::recursive_mutex mLock;
    GCPTSaveAsProperties mProperties;
    bool mIsRunning = false;
    bool mIsCancelRequested = false;
    GString mErrorText;
    GPathName mPDFPath;
    GPathName mPackagePath;
};
