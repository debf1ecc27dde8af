#pragma once

#include "export/GIDCSPSaveAsAction.h"

// The export of the active book. For the host's main thread.
class GIDCSPExportBookAction : public GIDCSPSaveAsAction
{
protected:
    // Checks each document of the book; those that are not open are opened for this and closed again. Exports
    // nothing when a document can't be opened or has a missing font. A book that has changed is written to
    // its file. Then the host makes one PDF of the book's documents, with the book's name. A failure leaves
    // no PDF.
    [[nodiscard]] bool ExportPDF(const GCPTSaveAsProperties& properties,
                                 const GPathName& workFolder) override;

    // As for a document, under the book's name, but without a report.
    [[nodiscard]] bool CreatePackage(const GPathName& folder) override;
};
