#include "archive/ZipSource.h"

#include "foundation/system/GSystemError.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>

namespace Morvane
{
static constexpr uint16_t cUnix = 3 << 8;

static qint64 getModifiedOf(const struct stat& status)
{
    return qint64(status.st_mtim.tv_sec) * 1000 + status.st_mtim.tv_nsec / 1000000;
}

static ZipSource::Kind getKindOf(const struct stat& status)
{
    if (S_ISREG(status.st_mode))
        return ZipSource::Kind::File;
    return S_ISDIR(status.st_mode) ? ZipSource::Kind::Folder : ZipSource::Kind::Special;
}

template <typename Status>
void ZipSource::takeNote(const Status& status)
{
    mIsFolder = S_ISDIR(status.st_mode);
    mSize = mIsFolder ? 0 : status.st_size;
    mModified = getModifiedOf(status);
    mUnixAttributes = static_cast<uint32_t>(status.st_mode & (S_IFMT | 0777)) << 16;
    mIsReadOnly = (status.st_mode & S_IWUSR) == 0;
}

bool ZipSource::failBySystem()
{
    mReason = GetReasonText(GetLastSystemError());
    return false;
}

ZipSource::Kind ZipSource::look()
{
    const QByteArray path = QFile::encodeName(mPath);
    struct stat status = {};
    if (lstat(path.constData(), &status) != 0) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR;
        failBySystem();
        return isMissing ? Kind::Missing : Kind::Unknown;
    }
    const bool isLink = S_ISLNK(status.st_mode);
    if (isLink && stat(path.constData(), &status) != 0) {
        const bool isDangling = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
        failBySystem();
        return isDangling ? Kind::LinkToNothing : Kind::Unknown;
    }
    takeNote(status);
    const Kind kind = getKindOf(status);
    if (kind == Kind::Special)
        mReason = QStringLiteral("it is no file");
    return isLink && mIsFolder ? Kind::LinkToFolder : kind;
}

bool ZipSource::open()
{
    struct stat status = {};
    mFile = PFileHandle(
        ::open(QFile::encodeName(mPath).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!mFile.IsOpen() || fstat(static_cast<int>(mFile.Get()), &status) != 0)
        return failBySystem();
    takeNote(status);
    if (getKindOf(status) == Kind::File)
        return true;
    mReason = QStringLiteral("it is no file");
    return false;
}

int ZipSource::read(char* bytes, int size)
{
    ssize_t count = -1;
    do
        count = ::read(static_cast<int>(mFile.Get()), bytes, static_cast<size_t>(size));
    while (count < 0 && errno == EINTR);
    if (count < 0)
        failBySystem();
    return static_cast<int>(count);
}

bool ZipSource::rewind()
{
    return lseek(static_cast<int>(mFile.Get()), 0, SEEK_SET) == 0 || failBySystem();
}

bool ZipSource::hasChanged()
{
    struct stat status = {};
    if (fstat(static_cast<int>(mFile.Get()), &status) != 0)
        return !failBySystem();
    return status.st_size != mSize || getModifiedOf(status) != mModified;
}

bool listSources(const QString& folder, QStringList& names, QString& reason)
{
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(opendir(QFile::encodeName(folder).constData()),
                                                     closedir);
    const dirent* entry = nullptr;
    while (stream != nullptr && (errno = 0, entry = readdir(stream.get())) != nullptr) {
        const QByteArray name = entry->d_name;
        if (name != "." && name != "..")
            names.append(QFile::decodeName(name));
    }
    if (stream == nullptr || errno != 0) {
        reason = GetReasonText(GetLastSystemError());
        return false;
    }
    std::sort(names.begin(), names.end());
    return true;
}

uint16_t getMadeBy()
{
    return cUnix;
}
}  // namespace Morvane
