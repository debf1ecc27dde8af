#pragma once

#include "export/ExportStep.h"

class IPackageCommand;

// What the file packages of a document and of a book have in common: a fresh folder that has their name.
class PackageStep : public ExportStep
{
protected:
    // The folder for the package's folder; outlives the step.
    explicit PackageStep(const GPathName& folder) : ExportStep(folder) {}

    // Has the command, which knows what to collect, make the package of that name.
    [[nodiscard]] bool MakePackage(IPackageCommand& command, const GString& name);
};
