#pragma once

#include "export/GIDCSPSaveAsAction.h"

// The export of the active book. For the host's main thread.
class GIDCSPExportBookAction : public GIDCSPSaveAsAction
{
protected:
    // Looks at each document of the book, opening those that are not open and closing them again, and exports
    // nothing when one can't be opened or any lacks a font. A book that has changed is written to its file.
    // Then the host makes one PDF of the book's documents, with the book's name. A failure leaves no PDF.
    [[nodiscard]] bool ExportPDF(const GCPTSaveAsProperties& properties,
                                 const GPathName& workFolder) override;

    // As for a document, under the book's name, but without a report.
    [[nodiscard]] bool CreatePackage(const GPathName& folder) override;
};
