#pragma once

#include "foundation/core/GOutputStream.h"

#include <QFile>

// Writes a file from its beginning, in place: for files that nobody else reads meanwhile.
class GFileOutputStream : public GOutputStream
{
public:
    // Creates the file, or empties the one that is there; raises a GCustomException with GErrorCode::cFile
    // when that fails.
    explicit GFileOutputStream(const GString& path);

    void Write(const char* bytes, int count) override;

    // Writes what is still buffered and closes the file; raises as Write does. A stream that is destroyed
    // without Close tries the same, but can't report a failure.
    void Close();

private:
    // Raises with the file's path and the reason when the step failed.
    void Check(bool isDone) const;

    QFile mFile;
};
