#pragma once

#include "foundation/core/GInputStream.h"
#include "foundation/core/GString.h"

#include "foundation/core/SharedFile.h"

// Reads a file, and nothing but a file (see SharedFile.h). While the stream is open, others may read, write,
// replace and delete the file, on Windows too.
class GFileInputStream : public GInputStream
{
public:
    // Opens the file; raises a GCustomException with GErrorCode::cFile when that fails, and when it has more
    // bytes than `largest`.
    explicit GFileInputStream(const GString& path, int64_t largest = cLargestTextFile);
    ~GFileInputStream() override;

    // Opens the file; null when the system says that there is no such file. If it can't be read for another
    // reason, raises as the constructor does.
    static std::unique_ptr<GFileInputStream> OpenIfThere(const GString& path,
                                                         int64_t largest = cLargestTextFile);

    int Read(char* bytes, int count) override;

    // Gives the next bytes, fewer at the end of the file. The next Read gives them again.
    int Peek(char* bytes, int count);

    void Reset() override;

    // Opens the file by its path again; raises as the constructor does. If the file was replaced meanwhile,
    // the clone reads the new one.
    std::unique_ptr<GInputStream> CreateClone() const override;

private:
    GFileInputStream(const GString& path, int64_t largest, std::unique_ptr<QFile> file);

    // Raises with the file's path and the reason when a step failed.
    void Check(bool isDone) const;
    [[noreturn]] void Fail(const GString& reason) const;
    void Seek(int64_t position);

    GString mPath;
    int64_t mLargest;
    std::unique_ptr<QFile> mFile;
};
