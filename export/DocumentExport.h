#pragma once

#include "export/PDFStep.h"

class ICommand;
class IDocument;
class ISystemFileData;

// One PDF of the document in front.
class DocumentExport : public PDFStep
{
public:
    // Both must outlive this object.
    DocumentExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder);
    ~DocumentExport() override;

    [[nodiscard]] bool Execute() override;

private:
    [[nodiscard]] bool CreateCommand();
    [[nodiscard]] bool TakeOutputFileData();
    [[nodiscard]] bool TakeDocument();
    [[nodiscard]] bool SaveDocument();
    [[nodiscard]] bool SetOutputFile();
    [[nodiscard]] bool SetPages();
    [[nodiscard]] bool CheckFonts();
    [[nodiscard]] bool RunCommand();

    HostPtr<ICommand> mCommand;
    HostPtr<ISystemFileData> mFileData;
    HostPtr<IDocument> mDocument;
};
