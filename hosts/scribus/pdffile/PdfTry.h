#pragma once

#include <QString>

#include <exception>

// Runs what may throw; false, with the reason, when it did.
template <class Work>
bool PdfTry(const Work& work, QString& reason)
{
    try {
        work();
        return true;
    } catch (const std::exception& error) {
        reason = QString::fromUtf8(error.what());
        return false;
    }
}
