#include "export/BookPackage.h"

#include "export/BookSource.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

bool BookPackage::Execute()
{
    const HostPtr<IObjectModel> objectModel = GetObjectModelInstance();
    const HostPtr<IBookPackageCommand> command =
        objectModel ? objectModel->CreateBookPackageCommand() : HostPtr<IBookPackageCommand>();
    if (!command)
        return Fail(PlugInMessage::cPackageCommandNotFound);
    HostPtr<IBook> book;
    if (const uint32_t code = BookSource::FindActive(book))
        return Fail(code);
    command->SetBook(*book);
    return MakePackage(*command, BookSource::GetOutputName(*book));
}
