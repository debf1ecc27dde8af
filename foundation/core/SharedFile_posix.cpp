#include "foundation/core/SharedFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace
{
GString GetKindReason(mode_t mode)
{
    switch (mode & S_IFMT) {
        case S_IFDIR:
            return QStringLiteral("it is a folder");
        case S_IFIFO:
            return QStringLiteral("it is a pipe");
        case S_IFSOCK:
            return QStringLiteral("it is a socket");
        default:
            return QStringLiteral("it is a device");
    }
}

// Why a file is not read; empty when it is.
GString GetRefusal(const struct stat& status, int64_t largest)
{
    if (!S_ISREG(status.st_mode))
        return GetKindReason(status.st_mode);
    return status.st_size > largest ? GetTooLargeReason(status.st_size, largest) : GString();
}

FileOpening JudgeFailure(const QByteArray& path, GString& reason)
{
    struct stat status = {};
    if (errno != ENOENT) {
        reason = qt_error_string(errno);
        return FileOpening::cRefused;
    }
    const bool isLink = lstat(path.constData(), &status) == 0;
    reason = isLink ? QStringLiteral("it is a link that leads nowhere") : qt_error_string(errno);
    return !isLink && errno == ENOENT ? FileOpening::cMissing : FileOpening::cRefused;
}
// Qt looks at the file once more; where that fails it takes the file for a pipe and forgets why.
FileOpening OpenIn(QFile& file, int descriptor, GString& reason)
{
    errno = 0;
    if (!file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle)) {
        reason = file.errorString();
        close(descriptor);
        return FileOpening::cRefused;
    }
    if (!file.isSequential())
        return FileOpening::cOpen;
    reason = qt_error_string(errno);
    file.close();
    return FileOpening::cRefused;
}
}  // namespace

FileOpening OpenSharedForReading(QFile& file, int64_t largest, GString& reason)
{
    const QByteArray path = QFile::encodeName(file.fileName());
    struct stat status = {};
    if (stat(path.constData(), &status) != 0)
        return JudgeFailure(path, reason);
    reason = GetRefusal(status, largest);
    if (!reason.isEmpty())
        return FileOpening::cRefused;
    // Looked at again when it is open, and opened without waiting: something else may bear the name by now.
    const int descriptor = open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return JudgeFailure(path, reason);
    if (fstat(descriptor, &status) != 0)
        reason = qt_error_string(errno);
    else
        reason = GetRefusal(status, largest);
    if (reason.isEmpty())
        return OpenIn(file, descriptor, reason);
    close(descriptor);
    return FileOpening::cRefused;
}

bool IsFileMissing(const GString& path)
{
    struct stat status = {};
    return lstat(QFile::encodeName(path).constData(), &status) != 0 && errno == ENOENT;
}
