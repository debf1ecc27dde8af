#pragma once

#include "export/ExportStep.h"

class IPackageCommand;

// What the file packages of a document and of a book have in common: a new folder with the name of the
// document or book.
class PackageStep : public ExportStep
{
protected:
    // The folder in which the package's folder is made; it must outlive the step.
    explicit PackageStep(const GPathName& folder) : ExportStep(folder) {}

    // Makes the package with that name by the command, which knows already what to collect.
    [[nodiscard]] bool MakePackage(IPackageCommand& command, const GString& name);
};
