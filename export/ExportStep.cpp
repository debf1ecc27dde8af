#include "export/ExportStep.h"

#include "export/ResultList.h"
#include "export/WorkFolder.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/ErrorText.h"

ExportStep::~ExportStep() = default;

bool ExportStep::Fail(uint32_t code, const GString& detail)
{
    return FailWith(ErrorText::Compose(code, detail));
}

bool ExportStep::FailWith(const GString& text)
{
    mErrorText = text;
    return false;
}

bool ExportStep::CallHost(uint32_t missing, const std::function<bool()>& calls)
{
    try {
        return calls();
    } catch (const HostFault::NotSupported&) {
        return Fail(missing);
    }
}

IDFile ExportStep::ReserveOutput(const GString& name, ReservedOutput::Kind kind)
{
    WorkFolder::Make(mFolder);
    mReserved.emplace(mFolder, name, kind);
    return IDFile(mReserved->GetPathName());
}

void ExportStep::KeepOutput()
{
    mOutputPath = mReserved->GetPathName();
    mReserved->Keep();
    ResultList::Note(mOutputPath);
}
