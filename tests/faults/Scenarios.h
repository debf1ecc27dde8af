#pragma once

#include "tests/support/faults/FaultDriver.h"

// The tasks whose every call is made to fail, each in the file of its subject.

// SettingsScenarios.cpp
FaultScenario GetDurableWrite();
FaultScenario GetRegistryChange();
FaultScenario GetDamagedRegistryChange();
FaultScenario GetSettingsFlush();
FaultScenario GetProjectSettings();
FaultScenario GetChangeAfterABrokenRead();
FaultScenario GetHopboxChange();

// FilesScenarios.cpp
FaultScenario GetFileCopy();
FaultScenario GetFileCopyToAFreeName();
FaultScenario GetXmlSave();
FaultScenario GetFolderQueries();
FaultScenario GetFolderCopyAcrossVolumes();
FaultScenario GetFolderRenameAcrossVolumes();

// ArchiveScenarios.cpp
FaultScenario GetArchiveCreation();
FaultScenario GetArchiveAddition();
FaultScenario GetExtraction();

// ChannelScenarios.cpp
FaultScenario GetPostAndAccept();
FaultScenario GetCopyOfAcceptedJob();

// ExportScenarios.cpp
FaultScenario GetExport();
FaultScenario GetListOfTemporaries();

// DocumentScenarios.cpp
FaultScenario GetDocumentChange();
