#pragma once

#include "export/PackageStep.h"

// One file package of the active book. The host writes no report for a book.
class BookPackage : public PackageStep
{
public:
    // The folder must outlive this object.
    explicit BookPackage(const GPathName& folder) : PackageStep(folder) {}

    [[nodiscard]] bool Execute() override;
};
