#pragma once

#include "export/GCPTSaveAsAction.h"

class ExportStep;

// The export of the document in front, with the host's commands (plugin/host). For the host's main thread.
class GIDCSPSaveAsAction : public GCPTSaveAsAction
{
protected:
    // Exports the document with the host's PDF export command: a document that has changed is saved first,
    // and one with missing fonts is not exported. The PDF has the document's name. If there is one with that
    // name already, it stays, and the new one is put into a new folder beside it. A failure leaves no PDF.
    [[nodiscard]] bool ExportPDF(const GCPTSaveAsProperties& properties,
                                 const GPathName& workFolder) override;

    // Makes the host collect the document with its fonts, links and profiles, and write a report, in a folder
    // with the document's name and " Folder". An existing folder of that name stays, as with the PDF. If only
    // the report fails, the package stays and its path is set.
    [[nodiscard]] bool CreatePackage(const GPathName& folder) override;

    // Run a step; set the PDF's or the package's path, and the error text.
    [[nodiscard]] bool RunPDFStep(ExportStep& step);
    [[nodiscard]] bool RunPackageStep(ExportStep& step);

private:
    [[nodiscard]] bool RunStep(ExportStep& step, uint32_t faultCode);
};
