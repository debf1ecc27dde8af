#include "export/GCPTSaveAsAction.h"

#include "export/GCPTSmartPathName.h"
#include "export/WorkFolder.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "plugin/messages/ErrorText.h"

namespace
{
// Gives true, and false again at the end of its life.
class Mark
{
public:
    explicit Mark(bool& mark) : mMark(mark) { mMark = true; }
    ~Mark() { mMark = false; }
    Mark(const Mark&) = delete;
    Mark& operator=(const Mark&) = delete;

private:
    bool& mMark;
};

// The project archive of the Hopbox that the properties name. Raises when the registry has no such Hopbox.
GPathName FindProject(const GCPTSaveAsProperties& properties)
{
    const HopboxRegistry registry;
    HopboxRegistryEntry entry;
    const GString& name = properties.hopboxKey.isEmpty() ? properties.hopboxName : properties.hopboxKey;
    if (!registry.GetEntry(name, entry))
        throw GCustomException(GErrorCode::cFile, QStringLiteral("There is no Hopbox \"%1\".").arg(name));
    return entry.contextFilePath;
}
}  // namespace

GCPTSaveAsAction::~GCPTSaveAsAction() = default;

void GCPTSaveAsAction::Receive(int32_t message, const GCPTSaveAsProperties& properties)
{
    const std::lock_guard<std::recursive_mutex> guard(mLock);
    if (message == GCPTSaveAsProperties::cCancelMessage) {
        mIsCancelRequested = true;
    } else if (message == GCPTSaveAsProperties::cRunMessage && !mIsRunning) {
        mProperties = properties;
        if (!mProperties.hopboxName.isEmpty())
            Run();
    }
}

void GCPTSaveAsAction::Run()
{
    if (Execute())
        Notify(cSucceeded);
    else if (std::exchange(mIsCancelRequested, false))
        Notify(cCancelled);
    else
        Notify(cFailed);
}

bool GCPTSaveAsAction::Execute()
{
    const std::lock_guard<std::recursive_mutex> guard(mLock);
    const Mark running(mIsRunning);
    mIsCancelRequested = false;
    mErrorText.clear();
    mPDFPath = mPackagePath = GPathName();
    if (!IsActive())
        return false;
    if (mProperties.hopboxName.isEmpty())
        return true;
    try {
        GCPTSaveAsProperties properties = mProperties;
        return RunSteps(properties);
    } catch (...) {
        return FailWith(ErrorText::DescribeCurrent());
    }
}

bool GCPTSaveAsAction::RunSteps(GCPTSaveAsProperties& properties)
{
    const GPathName workFolder = WorkFolder::GetPath(properties.hopboxName);
    const GCPTSmartPathName project = GCPTSmartPathName::MakeFolder(
        GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary), QStringLiteral("XXXXX"));
    return ObtainJobOptions(properties, project.GetPathName(), properties.jobOptions) &&
           ExportPDF(properties, workFolder) &&
           (!properties.includesFilePackage ||
            CreatePackage(mPDFPath.IsEmpty() ? workFolder : mPDFPath.GetParent()));
}

bool GCPTSaveAsAction::ObtainJobOptions(const GCPTSaveAsProperties& properties, const GPathName& folder,
                                        GPathName& jobOptions)
{
    GPathName archive;
    const GResult obtained = GResult::Catch([&] { archive = FindProject(properties); }).Then([&] {
        HopboxProject project(archive);
        GPrefMemoryModule settings;
        return project.ReadSettings(settings).Then(
            [&] { return project.ExtractJobOptions(folder, jobOptions); });
    });
    if (obtained.HasSucceeded())
        return true;
    GTrace::Error(QStringLiteral("GCPTSaveAsAction::ObtainJobOptions"), obtained.GetReason());
    return FailWith(ErrorText::GetSettingNotFound(properties.hopboxName));
}

bool GCPTSaveAsAction::FailWith(const GString& text)
{
    mErrorText = text;
    return false;
}
