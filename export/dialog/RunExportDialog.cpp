#include "export/dialog/RunExportDialog.h"

#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"

void RunExportDialog(const GString& title, GCPTSaveAsTool& tool)
{
    GCSPUSaveAsStamplexPDFDialog dialog(nullptr, tool);
    dialog.setWindowTitle(title);
    dialog.exec();
}
