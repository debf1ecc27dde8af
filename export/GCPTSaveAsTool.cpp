#include "export/GCPTSaveAsTool.h"

#include "export/GCPTSaveAsAction.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxHandOff.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"

#include <QScopedValueRollback>
#include <QUrl>
#include <QUrlQuery>

namespace
{
const GBuffer cIncludesPackage = QByteArrayLiteral("IncludeFilePackage");

void ShowAlert(const GString& text)
{
    const GString& title = GStringPool::GetString(PlugInMessage::cExportErrorTitle);
    if (GUserMessage* message = GUserMessage::GetInstance())
        message->ShowErrorMessage(title, text);
    else
        GTrace::Error(QStringLiteral("GCPTSaveAsTool::ShowAlert"), text);
}
}  // namespace

GCPTSaveAsTool::GCPTSaveAsTool(GCPTSaveAsAction& action, const DialogOptions& options)
    : mAction(action),
      mOptions(options),
      mSettings(std::make_unique<GPrefMemoryModule>()),
      mShowAlert(ShowAlert)
{
    mOptions.insert({DialogOption::cPageRange, true});
    mAction.Attach(*this);
    mSignal.Attach(mAction);
}

GCPTSaveAsTool::~GCPTSaveAsTool()
{
    mAction.Detach(*this);
}

bool GCPTSaveAsTool::GetOption(DialogOption option) const
{
    const auto found = mOptions.find(option);
    return found != mOptions.end() && found->second;
}

bool GCPTSaveAsTool::SelectPDFSetting(const GString& registryKey, const HopboxRecord& record)
{
    mProperties.hopboxKey = registryKey;
    mProperties.hopboxName = record.GetName(registryKey);
    mProperties.buildNumber = HopboxRegistry::GetCacheEntryNumber(record.entry.applicationPath);
    mSettings = std::make_unique<GPrefMemoryModule>();
    return HopboxProject(record.entry.contextFilePath).ReadSettings(*mSettings).HasSucceeded();
}

void GCPTSaveAsTool::SetPageRange(const GString& range)
{
    mProperties.hasPageRange = true;
    mProperties.pageRange = range;
}

void GCPTSaveAsTool::Submit()
{
    if (mAction.IsRunning())
        return;
    const GBuffer& group = HopboxProject::GetPlugInGroup();
    mSettings->GetGroupPreferences(group, mProperties.outputSettings);
    mProperties.includesFilePackage = GStringSupport::ToBool(mSettings->Get(group, cIncludesPackage));
    const QScopedValueRollback<bool> submitting(mIsSubmitting, true);
    const CmdUtils::CancelScope cancelling(*this);
    mSignal.Emit(GCPTSaveAsProperties::cRunMessage, mProperties);
}

void GCPTSaveAsTool::Cancel()
{
    mSignal.Emit(GCPTSaveAsProperties::cCancelMessage, mProperties);
}

void GCPTSaveAsTool::Update(GSubject& subject, int32_t notification)
{
    if (&subject != &static_cast<GSubject&>(mAction) || !mIsSubmitting)
        return;
    mWasCancelled = notification == GCPTSaveAsAction::cCancelled;
    if (notification == GCPTSaveAsAction::cSucceeded)
        HandOff();
    else if (notification == GCPTSaveAsAction::cFailed)
        ShowFailure();
}

GString GCPTSaveAsTool::GetPackageLocation(const GPathName& package, int32_t buildNumber)
{
    if (buildNumber < cFirstBuildWithURL && buildNumber != cEarlyBuildWithURL)
        return package.GetNativePath();
    QUrl url = QUrl::fromLocalFile(package.GetPortablePath());
    QUrlQuery query;
    query.addQueryItem(QStringLiteral("isinddpkg"), QStringLiteral("true"));
    url.setQuery(query);
    return GString::fromLatin1(url.toEncoded());
}

// The PDF first, then the package; the first that nobody takes ends it.
void GCPTSaveAsTool::HandOff() const
{
    const GString& name = mProperties.hopboxName;
    const bool isTaken = HopboxHandOff::SubmitJob(name, mAction.GetPDFPath().GetNativePath()) &&
                         (!mProperties.includesFilePackage ||
                          HopboxHandOff::SubmitJob(
                              name, GetPackageLocation(mAction.GetPackagePath(), mProperties.buildNumber)));
    if (!isTaken)
        mShowAlert(GStringPool::GetString(PlugInMessage::cHopboxNotLaunched));
}

void GCPTSaveAsTool::ShowFailure() const
{
    const GString& text = mAction.GetErrorText();
    mShowAlert(text.isEmpty() ? ErrorText::Compose(PlugInMessage::cPDFExportFailed) : text);
}
