#pragma once

#include <QString>

#include <vector>

// Every operation of the host that can find nothing or fail.
enum class HostOperation
{
    QuerySession,
    QueryApplication,
    QueryActionManager,
    QueryMenuManager,
    QueryUnitPreferences,
    QueryLayoutUtils,
    QueryDocumentUtils,
    QueryModalUtils,
    AcquireModalToken,
    ModalAlert,
    QueryFrontDocument,
    GetDocumentFile,
    QueryPageList,
    GetNthPage,
    GetPageUIDs,
    QueryFontList,
    SaveDocument,
    FindOpenDocument,
    OpenDocument,
    CloseDocument,
    QueryBookManager,
    QueryActiveBook,
    QueryBookContent,
    GetBookFile,
    GetNthDocumentFile,
    SaveBook,
    CreatePDFExportCommand,
    CreatePDFPreferencesCommand,
    CreateBookExportCommand,
    QueryPDFExportPreferences,
    ReadJobOptions,
    QuerySystemFileData,
    QueryOutputPages,
    QueryBookExportData,
    RunPDFExport,
    RunPDFPreferences,
    RunBookExport,
    QueryObjectModel,
    CreatePackageCommand,
    CreateBookPackageCommand,
    ExecutePackage,
    CreatePackageReportCommand,
    CreateReport
};

// What the host does when it is asked.
enum class HostAnswer
{
    Works,
    Absent,  // gives nothing: an empty handle, file or number
    Fails    // gives an error
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
