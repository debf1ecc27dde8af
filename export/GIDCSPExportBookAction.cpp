#include "export/GIDCSPExportBookAction.h"

#include "export/BookExport.h"
#include "export/BookPackage.h"

bool GIDCSPExportBookAction::ExportPDF(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
{
    BookExport step(properties, workFolder);
    return RunPDFStep(step);
}

bool GIDCSPExportBookAction::CreatePackage(const GPathName& folder)
{
    BookPackage step(folder);
    return RunPackageStep(step);
}
