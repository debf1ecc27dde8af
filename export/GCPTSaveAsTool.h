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

// Connects the dialog and the action for one choice of the menu entry. It takes the user's choices, runs the
// action, and then gives the result to the Hopbox or shows the one alert. For the main thread. The action
// must outlive the tool.
class GCPTSaveAsTool : public GObserver, private ICancelObserver
{
public:
    // From this number on, and for one number below it, a Hopbox application takes a file package as a URL.
    static constexpr int32_t cFirstBuildWithURL = 637640;
    static constexpr int32_t cEarlyBuildWithURL = 666;

    GCPTSaveAsTool(GCPTSaveAsAction& action, const DialogOptions& options);
    ~GCPTSaveAsTool() override;

    // An option that was not given has its default: only the page range is offered.
    [[nodiscard]] bool GetOption(DialogOption option) const;

    // Selects the Hopbox of a registry key. `record` is what the caller has read from the registry; the
    // settings of the Hopbox's project are read here. False when the project can't be read; what could be
    // read is still used, and Submit then fails with an alert.
    [[nodiscard]] bool SelectPDFSetting(const GString& registryKey, const HopboxRecord& record);

    // The settings of the selected Hopbox's project, which the dialog changes for this export.
    GPrefMemoryModule& GetSettings() { return *mSettings; }

    // Without a call, all pages are exported.
    void SetPageRange(const GString& range);

    // Runs the export to the selected Hopbox; returns when the export and its alert are finished. Does
    // nothing while the action runs another export. If several tools share an action, each handles only its
    // own run.
    void Submit();

    // Asks the running export to end.
    void Cancel();

    // Whether the last run ended because of Cancel.
    bool WasCancelled() const { return mWasCancelled; }

    // Gets the alert's text instead of the user.
    using AlertTaker = std::function<void(const GString& text)>;
    void SetAlertTaker(AlertTaker take) { mShowAlert = std::move(take); }

    void Update(GSubject& subject, int32_t notification) override;

    // How a file package is named to the Hopbox: by its native path, or by a `file` URL for the builds that
    // accept one.
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
