#pragma once

#include "foundation/core/GResult.h"

#include <exception>

// Runs what may throw; what it threw is the failure.
template <class Work>
GResult PdfTry(const Work& work)
{
    try {
        work();
        return GResult::Success();
    } catch (const std::exception& error) {
        return GResult::Failure(QString::fromUtf8(error.what()));
    }
}
