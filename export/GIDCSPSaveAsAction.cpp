#include "export/GIDCSPSaveAsAction.h"

#include "export/DocumentExport.h"
#include "export/DocumentPackage.h"

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
    const bool isDone = RunStep(step);
    SetPDFPath(step.GetOutputPath());
    return isDone;
}

bool GIDCSPSaveAsAction::RunPackageStep(ExportStep& step)
{
    const bool isDone = RunStep(step);
    SetPackagePath(step.GetOutputPath());
    return isDone;
}

bool GIDCSPSaveAsAction::RunStep(ExportStep& step)
{
    return step.Execute() || FailWith(step.GetErrorText());
}
