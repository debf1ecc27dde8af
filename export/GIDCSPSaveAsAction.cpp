#include "export/GIDCSPSaveAsAction.h"

#include "export/DocumentExport.h"

bool GIDCSPSaveAsAction::ExportPDF(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
{
    DocumentExport run(properties, workFolder);
    if (!run.Execute())
        return FailWith(run.GetErrorText());
    SetPDFPath(run.GetPDFPath());
    return true;
}
