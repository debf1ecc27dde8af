#include "foundation/system/GProcessInfo.h"

#include <QDir>
#include <QFile>

#include <unistd.h>
#include <climits>

#include <algorithm>

namespace
{
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
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        bool isNumber = false;
        const uint32_t processID = entry.toUInt(&isNumber);
        if (isNumber && !wanted.isEmpty() && GetImageName(entry.toLatin1()) == wanted)
            processIDs.push_back(processID);
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
