#pragma once

#include "export/GCPTSaveAsProperties.h"
#include "foundation/core/GSignal.h"
#include "foundation/core/GSubject.h"
#include "plugin/host/ICommand.h"

#include <functional>
#include <map>
#include <memory>

class GCPTSaveAsAction;
class GPrefMemoryModule;
struct HopboxRecord;

// What the dialog offers for an export.
enum class DialogOption : int32_t
{
    cSlugArea = 0,
    cSpreads = 1,
    cBleedMark = 2,
    cMarkWeight = 3,
    cFilePackage = 4,
    cPageRange = 5
};
using DialogOptions = std::map<DialogOption, bool>;

// Stands between the dialog and the action for one choice of the menu entry: takes the user's choices, has
// the action run, hands what it has produced to the Hopbox or shows the one alert. For the main thread. The
// action outlives the tool.
class GCPTSaveAsTool : public GObserver, private ICancelObserver
{
public:
    // From this number on, and for one number below it, a Hopbox application takes a file package as a URL.
    static constexpr int32_t cFirstBuildWithURL = 637640;
    static constexpr int32_t cEarlyBuildWithURL = 666;

    GCPTSaveAsTool(GCPTSaveAsAction& action, const DialogOptions& options);
    ~GCPTSaveAsTool() override;

    // An option that was not given has its default: the page range is offered, nothing else.
    [[nodiscard]] bool GetOption(DialogOption option) const;

    // Takes the Hopbox of a registry key, with what the caller has read of the registry, and the settings of
    // its project. False when the project can't be read; what could be read is taken all the same, and
    // submitting it fails with an alert.
    [[nodiscard]] bool SelectPDFSetting(const GString& registryKey, const HopboxRecord& record);

    // The settings of the selected Hopbox's project, which the dialog changes for this export.
    GPrefMemoryModule& GetSettings() { return *mSettings; }

    // Without a call, all pages are exported.
    void SetPageRange(const GString& range);

    // Runs the export of the selected Hopbox; returns when it is done, with its alert. Does nothing while the
    // action runs another export. A tool answers for its own run only, also where several share an action.
    void Submit();

    // Asks the running export to end.
    void Cancel();

    // Whether the last run ended because of that.
    bool WasCancelled() const { return mWasCancelled; }

    // Takes the alert's text in place of the user.
    using AlertTaker = std::function<void(const GString& text)>;
    void SetAlertTaker(AlertTaker take) { mShowAlert = std::move(take); }

    void Update(GSubject& subject, int32_t notification) override;

    // What is handed off of a file package: its native path, or a `file` URL for the builds that take it.
    static GString GetPackageLocation(const GPathName& package, int32_t buildNumber);

private:
    void OnCommandCancelled() override { Cancel(); }
    void HandOff() const;
    void ShowFailure() const;

    GCPTSaveAsAction& mAction;
    DialogOptions mOptions;
    std::unique_ptr<GPrefMemoryModule> mSettings;
    GCPTSaveAsProperties mProperties;
    GSignal<GCPTSaveAsProperties> mSignal;
    AlertTaker mShowAlert;
    bool mIsSubmitting = false;
    bool mWasCancelled = false;
};
