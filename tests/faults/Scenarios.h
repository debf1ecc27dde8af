#pragma once

#include "foundation/trace/ILogInterface.h"
#include "tests/support/faults/FaultDriver.h"

#include <cstdio>

// Tells a task's errors on standard error.
class ErrorPrinter : public Morvane::ILogInterface
{
public:
    void log(Morvane::LogLevel level, const QString& source, const QString& message) noexcept override
    {
        if (level == Morvane::LogLevel::Error)
            std::fprintf(stderr, "%s: %s\n", qPrintable(source), qPrintable(message));
    }
};

// The tasks whose every call is made to fail, each in the file of its subject.

// SettingsScenarios.cpp
FaultScenario GetDurableWrite();
FaultScenario GetRegistryChange();
FaultScenario GetDamagedRegistryChange();
FaultScenario GetSettingsFlush();
FaultScenario GetProjectSettings();
FaultScenario GetChangeAfterABrokenRead();
FaultScenario GetHopboxChange();
FaultScenario GetHopboxDeletion();

// FilesScenarios.cpp
FaultScenario GetFileCopy();
FaultScenario GetFileCopyToAFreeName();
FaultScenario GetXmlSave();
FaultScenario GetFolderQueries();
FaultScenario GetFolderCopyAcrossVolumes();
FaultScenario GetFileRenameAcrossVolumes();
FaultScenario GetFolderRenameAcrossVolumes();

// ArchiveScenarios.cpp
FaultScenario GetArchiveCreation();
FaultScenario GetArchiveAddition();
FaultScenario GetExtraction();

// ChannelScenarios.cpp
FaultScenario GetPostAndAccept();
FaultScenario GetTakeOver();
FaultScenario GetCopyOfAcceptedJob();
FaultScenario GetCopyOfAcceptedFile();

// ExportScenarios.cpp
FaultScenario GetExport();
FaultScenario GetListOfTemporaries();

// DocumentScenarios.cpp
FaultScenario GetDocumentChange();
FaultScenario GetAnnouncement();

// ProcessScenarios.cpp
FaultScenario GetProgramStart();
