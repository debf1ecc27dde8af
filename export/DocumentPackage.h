#pragma once

#include "export/PackageStep.h"
#include "plugin/host/HostPtr.h"

class IDocumentPackageCommand;
class IObjectModel;

// One file package of the document in front, with the host's report in it.
class DocumentPackage : public PackageStep
{
public:
    // The folder must outlive this object.
    explicit DocumentPackage(const GPathName& folder);
    ~DocumentPackage() override;

    [[nodiscard]] bool Execute() override;

private:
    [[nodiscard]] bool CreateCommand();
    [[nodiscard]] bool MakeDocumentPackage();
    [[nodiscard]] bool WriteReport();

    HostPtr<IObjectModel> mObjectModel;
    HostPtr<IDocumentPackageCommand> mCommand;
};
