#pragma once

#include "export/PDFStep.h"

class ICommand;
class IDocument;
class ISystemFileData;

// One PDF of the document in front.
class DocumentExport : public PDFStep
{
public:
    // Both outlive this object.
    DocumentExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder);
    ~DocumentExport() override;

    bool Execute() override;

private:
    bool CreateCommand();
    bool TakeOutputFileData();
    bool TakeDocument();
    bool SaveDocument();
    bool SetOutputFile();
    bool SetPages();
    bool CheckFonts();
    bool RunCommand();

    HostPtr<ICommand> mCommand;
    HostPtr<ISystemFileData> mFileData;
    HostPtr<IDocument> mDocument;
};
