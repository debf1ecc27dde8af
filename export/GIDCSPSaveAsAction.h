#pragma once

#include "export/GCPTSaveAsAction.h"

// The export of the document in front, with the host's commands (plugin/host). For the host's main thread.
class GIDCSPSaveAsAction : public GCPTSaveAsAction
{
protected:
    // Exports the document with the host's PDF export command: a document that has changed is saved first,
    // and one with missing fonts is not exported. The PDF bears the document's name; one that is there
    // already is left, and the new one goes into a fresh folder beside it. A failure leaves no PDF.
    bool ExportPDF(const GCPTSaveAsProperties& properties, const GPathName& workFolder) override;
};
