#pragma once

#include "export/ExportStep.h"
#include "export/GCPTSaveAsProperties.h"
#include "export/PlacedJobOptions.h"
#include "plugin/host/HostPtr.h"

class ICommand;
class IPDFExportPreferences;
class IDocument;

// What the exports of a document and of a book as PDF have in common.
class PDFStep : public ExportStep
{
public:
    ~PDFStep() override;

protected:
    // Both must outlive the step.
    PDFStep(const GCPTSaveAsProperties& properties, const GPathName& workFolder);

    // Places the job options among the host's settings, until the end of the step, and puts them and the
    // Hopbox's output settings into the preferences of a command.
    [[nodiscard]] bool ApplyJobOptions(ICommand& command);

    // If any fonts are missing, gives false with the message for that number of fonts.
    [[nodiscard]] bool CheckMissingFonts(int count, const GString& detail);

    IDFile ReservePDF(const GString& name);

    // Runs the command that writes the reserved PDF, and keeps the PDF. False when the command fails, and
    // when there is no PDF after it.
    [[nodiscard]] bool WritePDF(ICommand& command);

    const GCPTSaveAsProperties& GetProperties() const { return mProperties; }

    // The preferences into which the job options were put.
    const IPDFExportPreferences& GetPreferences() const { return *mPreferences; }

private:
    const GCPTSaveAsProperties& mProperties;
    std::optional<PlacedJobOptions> mJobOptions;
    HostPtr<IPDFExportPreferences> mPreferences;
};
