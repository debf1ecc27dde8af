#include "tests/support/fake_host/HostOperation.h"

#define ABSENT(name)                            \
    {                                           \
        HostOperation::name, #name, true, false \
    }
#define FAILS(name)                             \
    {                                           \
        HostOperation::name, #name, false, true \
    }
#define BOTH(name)                             \
    {                                          \
        HostOperation::name, #name, true, true \
    }

const std::vector<HostOperationInfo>& GetHostOperations()
{
    static const std::vector<HostOperationInfo> operations = {
        ABSENT(QuerySession),
        ABSENT(QueryApplication),
        ABSENT(QueryActionManager),
        ABSENT(QueryMenuManager),
        ABSENT(QueryUnitPreferences),
        ABSENT(QueryLayoutUtils),
        ABSENT(QueryDocumentUtils),
        ABSENT(QueryModalUtils),
        ABSENT(AcquireModalToken),
        FAILS(ModalAlert),
        ABSENT(QueryFrontDocument),
        ABSENT(GetDocumentFile),
        ABSENT(QueryPageList),
        ABSENT(GetNthPage),
        FAILS(GetPageUIDs),
        ABSENT(QueryFontList),
        FAILS(SaveDocument),
        ABSENT(FindOpenDocument),
        BOTH(OpenDocument),
        FAILS(CloseDocument),
        ABSENT(QueryBookManager),
        ABSENT(QueryActiveBook),
        ABSENT(QueryBookContent),
        ABSENT(GetBookFile),
        ABSENT(GetNthDocumentFile),
        FAILS(SaveBook),
        ABSENT(CreatePDFExportCommand),
        ABSENT(CreatePDFPreferencesCommand),
        ABSENT(CreateBookExportCommand),
        ABSENT(QueryPDFExportPreferences),
        FAILS(ReadJobOptions),
        ABSENT(QuerySystemFileData),
        ABSENT(QueryOutputPages),
        ABSENT(QueryBookExportData),
        FAILS(RunPDFExport),
        FAILS(RunPDFPreferences),
        FAILS(RunBookExport),
        ABSENT(QueryObjectModel),
        ABSENT(CreatePackageCommand),
        ABSENT(CreateBookPackageCommand),
        FAILS(ExecutePackage),
        ABSENT(CreatePackageReportCommand),
        FAILS(CreateReport),
    };
    return operations;
}

QString GetName(HostOperation operation)
{
    return QString::fromLatin1(GetHostOperations()[static_cast<size_t>(operation)].name);
}
