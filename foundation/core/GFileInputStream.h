#pragma once

#include "foundation/core/GInputStream.h"
#include "foundation/core/GString.h"

class QFile;

// Reads a file. While the stream is open, others may read, write, replace and delete the file, on Windows
// too.
class GFileInputStream : public GInputStream
{
public:
    // Opens the file; raises a GCustomException with GErrorCode::cFile when that fails.
    explicit GFileInputStream(const GString& path);
    ~GFileInputStream() override;

    int Read(char* bytes, int count) override;
    void Reset() override;

    // Opens the file by its path again; raises as the constructor does. Where the file was replaced
    // meanwhile, the clone reads the new one.
    std::unique_ptr<GInputStream> CreateClone() const override;

private:
    // Raises with the file's path and the reason when a step failed.
    void Check(bool isDone) const;
    [[noreturn]] void Fail(const GString& reason) const;
    void Seek(int64_t position);

    GString mPath;
    std::unique_ptr<QFile> mFile;
};
