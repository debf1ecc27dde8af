#pragma once

#include <QString>

#include <vector>

// clang-format off
// Every operation of the host that can find nothing, fail, or both.
#define HOST_OPERATIONS(ABSENT, FAILS, BOTH) \
    ABSENT(QuerySession) ABSENT(QueryApplication) ABSENT(QueryActionManager) ABSENT(QueryMenuManager) \
    ABSENT(QueryUnitPreferences) ABSENT(QueryLayoutUtils) ABSENT(QueryDocumentUtils) \
    ABSENT(QueryModalUtils) ABSENT(AcquireModalToken) FAILS(ModalAlert) \
    ABSENT(QueryFrontDocument) ABSENT(GetDocumentFile) ABSENT(QueryPageList) ABSENT(GetNthPage) \
    FAILS(GetPageUIDs) ABSENT(QueryFontList) \
    FAILS(SaveDocument) ABSENT(FindOpenDocument) BOTH(OpenDocument) FAILS(CloseDocument) \
    ABSENT(QueryBookManager) ABSENT(QueryActiveBook) ABSENT(QueryBookContent) ABSENT(GetBookFile) \
    ABSENT(GetNthDocumentFile) FAILS(SaveBook) \
    ABSENT(CreatePDFExportCommand) ABSENT(CreatePDFPreferencesCommand) ABSENT(CreateBookExportCommand) \
    ABSENT(QueryPDFExportPreferences) FAILS(ReadJobOptions) ABSENT(QuerySystemFileData) \
    ABSENT(QueryOutputPages) ABSENT(QueryBookExportData) \
    FAILS(RunPDFExport) FAILS(RunPDFPreferences) FAILS(RunBookExport) \
    ABSENT(QueryObjectModel) ABSENT(CreatePackageCommand) ABSENT(CreateBookPackageCommand) \
    FAILS(ExecutePackage) ABSENT(CreatePackageReportCommand) FAILS(CreateReport)
// clang-format on

#define HOST_OPERATION_NAME(name) name,
enum class HostOperation
{
    HOST_OPERATIONS(HOST_OPERATION_NAME, HOST_OPERATION_NAME, HOST_OPERATION_NAME)
};
#undef HOST_OPERATION_NAME

// What the host does when it is asked.
enum class HostAnswer
{
    Works,
    Absent,        // gives nothing: an empty handle, file or number
    Fails,         // gives an error
    Raises,        // against the interface's rule
    RaisesNumber,  // the same, something that is no exception
    Nonsense       // gives a count, text, number or error that no host has
};

struct HostOperationInfo
{
    HostOperation operation;
    const char* name;
    bool canBeAbsent;
    bool canFail;
};

// All of them, in the order of the enumeration, for tests that go through every fault.
const std::vector<HostOperationInfo>& GetHostOperations();

QString GetName(HostOperation operation);
