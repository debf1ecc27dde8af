#pragma once

#include "tests/support/fake_host/FakeObject.h"

class FakeCommand : public FakeObject<ICommand>
{
public:
    FakeCommand(FakeHost& host, ClassID commandClass);

    HostPtr<IPDFExportPreferences> QueryPDFExportPreferences() override;
    HostPtr<ISystemFileData> QuerySystemFileData() override;
    HostPtr<IOutputPages> QueryOutputPages() override;
    HostPtr<IBookExportData> QueryBookExportData() override;

    // Zero when the command did its work; a PDF command writes its file.
    ErrorCode Run();

private:
    // A part that only commands of these classes have.
    template <class Part>
    HostPtr<Part> Give(std::initializer_list<ClassID> owners, HostOperation operation);

    std::shared_ptr<FakeCommandRecord> mRecord;
};

class FakeObjectModel : public FakeObject<IObjectModel>
{
public:
    explicit FakeObjectModel(FakeHost& host) : FakeObject(host, "IObjectModel") {}
    HostPtr<IDocumentPackageCommand> CreatePackageCommand() const override;
    HostPtr<IPackageReportCommand> CreatePackageReportCommand() const override;
    HostPtr<IBookPackageCommand> CreateBookPackageCommand() const override;
};
