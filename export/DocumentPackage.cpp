#include "export/DocumentPackage.h"

#include "export/DocumentSource.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

DocumentPackage::DocumentPackage(const GPathName& folder) : PackageStep(folder) {}

DocumentPackage::~DocumentPackage() = default;

bool DocumentPackage::Execute()
{
    return CreateCommand() && MakeDocumentPackage() && WriteReport();
}

bool DocumentPackage::CreateCommand()
{
    mObjectModel = GetObjectModelInstance();
    if (mObjectModel)
        mCommand = mObjectModel->CreatePackageCommand();
    return mCommand || Fail(PlugInMessage::cPackageCommandNotFound);
}

bool DocumentPackage::MakeDocumentPackage()
{
    const HostPtr<IDocument> document = DocumentSource::QueryFront();
    if (!document)
        return Fail(PlugInMessage::cNoDocument);
    mCommand->SetDocument(*document);
    return MakePackage(*mCommand, DocumentSource::GetOutputName(*document));
}

bool DocumentPackage::WriteReport()
{
    const HostPtr<IPackageReportCommand> report = mObjectModel->CreatePackageReportCommand();
    if (!report)
        return Fail(PlugInMessage::cReportCommandNotFound);
    return CallHost(PlugInMessage::cReportCommandNotFound, [&] {
        return report->CreateReport(*mCommand) == IPackageReportCommand::cReportWritten ||
               Fail(PlugInMessage::cReportFailed);
    });
}
