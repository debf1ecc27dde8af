#include "foundation/system/GProcessInfo.h"

#include "foundation/core/GPathName.h"
#include "foundation/system/GSystemError.h"

#include <QByteArrayList>
#include <QFile>

#include <dirent.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <memory>

namespace
{
struct FolderCloser
{
    void operator()(DIR* folder) const { closedir(folder); }
};

// The fields of a process's status line that count here.
struct Status
{
    char state = 0;           // 0: there is no such process
    uint64_t startTicks = 0;  // since the machine was started
};

QByteArray ReadSystemFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? file.readAll() : QByteArray();
}

Status GetStatus(uint32_t processID)
{
    constexpr int cStateField = 0;
    constexpr int cStartField = 19;
    const QByteArray line = ReadSystemFile(QStringLiteral("/proc/%1/stat").arg(processID));
    // The second field is the program's own name in brackets, which may hold blanks and brackets itself.
    const QList<QByteArray> fields = line.mid(line.lastIndexOf(')') + 2).split(' ');
    if (fields.size() <= cStartField || fields.at(cStateField).isEmpty())
        return {};
    return {fields.at(cStateField).at(0), fields.at(cStartField).toULongLong()};
}

bool IsRunning(const Status& status)
{
    return status.state != 0 && status.state != 'Z' && status.state != 'X' && status.state != 'x';
}

// The names of the folders that the processes have.
QByteArrayList ListProcesses()
{
    const GPathName path(QStringLiteral("/proc"));
    const std::unique_ptr<DIR, FolderCloser> folder(opendir("/proc"));
    QByteArrayList processes;
    errno = folder != nullptr ? 0 : errno;
    while (const dirent* entry = folder != nullptr ? readdir(folder.get()) : nullptr) {
        const QByteArray name(entry->d_name);
        bool isNumber = false;
        name.toUInt(&isNumber);
        if (isNumber)
            processes.append(name);
        errno = 0;
    }
    if (errno != 0)
        RaiseFileError(QStringLiteral("The list of processes in \"%1\" can't be read"), path,
                       GetLastSystemError());
    return processes;
}

// The image name of a process, empty when it can't be read. The system adds a note to the path of a file that
// was removed or replaced.
QByteArray GetImageName(const QByteArray& processID)
{
    char path[PATH_MAX];
    const ssize_t length = readlink(QByteArray("/proc/" + processID + "/exe").constData(), path, sizeof path);
    if (length <= 0)
        return {};
    QByteArray name(path, static_cast<int>(length));
    const QByteArray removed(" (deleted)");
    if (name.endsWith(removed))
        name.chop(removed.size());
    return name.mid(name.lastIndexOf('/') + 1);
}
}  // namespace

std::vector<uint32_t> GProcessInfo::GetProcessIDs(const GString& imageName)
{
    std::vector<uint32_t> processIDs;
    const QByteArray wanted = QFile::encodeName(imageName);
    for (const QByteArray& entry : ListProcesses()) {
        if (!wanted.isEmpty() && GetImageName(entry) == wanted)
            processIDs.push_back(entry.toUInt());
    }
    std::sort(processIDs.begin(), processIDs.end());
    return processIDs;
}

uint32_t GProcessInfo::GetOwnProcessID()
{
    return static_cast<uint32_t>(getpid());
}

bool GProcessInfo::IsAlive(uint32_t processID)
{
    return IsRunning(GetStatus(processID));
}

uint64_t GProcessInfo::GetStartTime(uint32_t processID)
{
    const Status status = GetStatus(processID);
    return IsRunning(status) ? GetMachineStart() << 40 | status.startTicks : 0;
}

uint64_t GProcessInfo::GetMachineStart()
{
    constexpr int cDigits = 6;
    static const uint64_t number = ReadSystemFile(QStringLiteral("/proc/sys/kernel/random/boot_id"))
                                       .left(cDigits)
                                       .toULongLong(nullptr, 16);
    return number;
}
