#include "foundation/core/GFileInputStream.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <QDir>
#include <QFile>

GFileInputStream::GFileInputStream(const GString& path, int64_t largest)
    : GFileInputStream(path, largest, std::make_unique<QFile>(path))
{
    GString reason;
    if (OpenSharedForReading(*mFile, mLargest, reason) != FileOpening::cOpen)
        Fail(reason);
}

GFileInputStream::GFileInputStream(const GString& path, int64_t largest, std::unique_ptr<QFile> file)
    : mPath(path), mLargest(largest), mFile(std::move(file))
{
}

GFileInputStream::~GFileInputStream() = default;

std::unique_ptr<GFileInputStream> GFileInputStream::OpenIfThere(const GString& path, int64_t largest)
{
    std::unique_ptr<GFileInputStream> stream(
        new GFileInputStream(path, largest, std::make_unique<QFile>(path)));
    GString reason;
    const FileOpening opening = OpenSharedForReading(*stream->mFile, largest, reason);
    if (opening == FileOpening::cRefused)
        stream->Fail(reason);
    return opening == FileOpening::cOpen ? std::move(stream) : nullptr;
}

int GFileInputStream::Read(char* bytes, int count)
{
    int total = 0;
    while (total < count) {
        const qint64 step = mFile->read(bytes + total, count - total);
        Check(step >= 0);
        if (step == 0)
            break;
        total += static_cast<int>(step);
    }
    return total;
}

int GFileInputStream::Peek(char* bytes, int count)
{
    const qint64 length = mFile->peek(bytes, count);
    Check(length >= 0);
    return static_cast<int>(length);
}

void GFileInputStream::Reset()
{
    Seek(0);
}

std::unique_ptr<GInputStream> GFileInputStream::CreateClone() const
{
    auto clone = std::make_unique<GFileInputStream>(mPath, mLargest);
    clone->Seek(mFile->pos());
    return clone;
}

void GFileInputStream::Seek(int64_t position)
{
    Check(mFile->seek(position));
}

void GFileInputStream::Check(bool isDone) const
{
    if (!isDone)
        Fail(mFile->errorString());
}

void GFileInputStream::Fail(const GString& reason) const
{
    throw GCustomException(
        GErrorCode::cFile,
        QStringLiteral("The file \"%1\" could not be read: %2").arg(QDir::toNativeSeparators(mPath), reason));
}
