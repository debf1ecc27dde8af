#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/host/HostObject.h"
#include "plugin/host/ICommand.h"

#include <memory>

class ScribusHost;

// A command of this host: it collects what it is told, and does the work when it is run.
class HostCommand : public HostObject<ICommand>
{
public:
    // What a command has been told; shared with the parts of it that are handed out.
    struct Orders;

    // Empty for a class that this host has no command of.
    static HostPtr<ICommand> Make(ScribusHost& host, ClassID commandClass);

    HostCommand(ScribusHost& host, ClassID commandClass);
    ~HostCommand() override;

    ErrorCode Run();

    HostPtr<IPDFExportPreferences> QueryPDFExportPreferences() override;
    HostPtr<ISystemFileData> QuerySystemFileData() override;
    HostPtr<IOutputPages> QueryOutputPages() override;
    HostPtr<IBookExportData> QueryBookExportData() override;

private:
    ErrorCode ExportDocument();
    ErrorCode ExportBook();
    ErrorCode Finish(ErrorCode result) const;
    void LogUnavailable() const;

    ScribusHost& mHost;
    ClassID mClass;
    std::shared_ptr<Orders> mOrders;
};
