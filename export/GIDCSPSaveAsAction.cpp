#include "export/GIDCSPSaveAsAction.h"

#include "export/DocumentExport.h"
#include "export/DocumentPackage.h"
#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"

bool GIDCSPSaveAsAction::ExportPDF(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
{
    DocumentExport step(properties, workFolder);
    return RunPDFStep(step);
}

bool GIDCSPSaveAsAction::CreatePackage(const GPathName& folder)
{
    DocumentPackage step(folder);
    return RunPackageStep(step);
}

bool GIDCSPSaveAsAction::RunPDFStep(ExportStep& step)
{
    const bool isDone = RunStep(step, PlugInMessage::cPDFExportFailed);
    SetPDFPath(step.GetOutputPath());
    return isDone;
}

bool GIDCSPSaveAsAction::RunPackageStep(ExportStep& step)
{
    const bool isDone = RunStep(step, PlugInMessage::cPackageFailed);
    SetPackagePath(step.GetOutputPath());
    return isDone;
}

// No call of the host may raise. One that does ends its step; the host's words stand behind the code's text.
bool GIDCSPSaveAsAction::RunStep(ExportStep& step, uint32_t faultCode)
{
    try {
        return step.Execute() || FailWith(step.GetErrorText());
    } catch (const GException&) {
        throw;
    } catch (...) {
        GTrace::Error(QStringLiteral("GIDCSPSaveAsAction::RunStep"), HostFault::Describe());
        return FailWith(ErrorText::Compose(faultCode, QLatin1Char('\n') + ErrorText::DescribeCurrent()));
    }
}
