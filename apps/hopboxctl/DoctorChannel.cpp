#include "apps/hopboxctl/Doctor.h"

#include "apps/hopboxctl/ShellWord.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/PSystem.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxMessages.h"
#include "hopbox/HopboxRegistry.h"

#include <QDirIterator>

#include <algorithm>

using Doctor::Finding;

// What lies between an export and its receiver.

namespace
{
constexpr size_t cFullPercent = 80;

bool IsServed(const std::vector<uint32_t>& processes, const GString& hopbox)
{
    return std::any_of(processes.cbegin(), processes.cend(), [&](uint32_t process) {
        return GPPIPCManager::Get()->GetReceiverState(process, nullptr, hopbox) == GPPIPCState::Reachable;
    });
}

GResult Clean()
{
    return GPPIPCManager::Get()->Clean(false) > 0
               ? GResult::Success()
               : GResult::Failure(QStringLiteral("Nothing of an ended receiver could be removed."));
}
}  // namespace

void Doctor::LookAtReceivers(const HopboxRegistry& registry, QVector<Finding>& findings)
{
    const std::vector<uint32_t> processes = GProcessInfo::GetProcessIDs(HopboxMessage::cProcessImage);
    if (!IsServed(processes, GString())) {
        findings.append(
            {"no-receiver",
             QStringLiteral("No receiver is running that could take a job."),
             QStringLiteral(
                 "PrinterProcessorWin.exe --inbox DIR (\"hopboxctl notify\" says why a running one "
                 "can't be reached)"),
             {}});
        return;
    }
    for (const QString& key : registry.GetKeys()) {
        const std::optional<HopboxRecord> record = registry.GetRecord(key);
        if (record && record->entry.isPlugin && !IsServed(processes, record->GetName(key)))
            findings.append(
                {"not-received",
                 QStringLiteral("No running receiver takes the jobs of \"%1\".").arg(record->GetName(key)),
                 QStringLiteral("hopboxctl receiver install %1 --inbox DIR").arg(ShellWord::Quote(key)),
                 {}});
    }
}

void Doctor::LookAtChannel(QVector<Finding>& findings)
{
    for (const GPPIPCReceiverInfo& receiver : GPPIPCManager::Get()->Look()) {
        const QString process = QString::number(receiver.process);
        const QString size = QString::number(receiver.fill);
        if (receiver.isKept)
            findings.append(
                {"jobs-wait",
                 QStringLiteral("Jobs of %1 bytes wait for the next start of a receiver.").arg(size),
                 QStringLiteral("start it with the same --inbox as before"),
                 {}});
        else if (!receiver.isAlive)
            findings.append(
                {"receiver-ended",
                 QStringLiteral("Something is left of a receiver that has ended, process %1.").arg(process),
                 QStringLiteral("hopboxctl channel clean"), Clean, false});
        else if (receiver.fill * 100 > receiver.capacity * cFullPercent)
            findings.append({"queue-full",
                             QStringLiteral("Process %1 does not take its jobs; its queue holds %2 bytes.")
                                 .arg(process, size),
                             QStringLiteral("stop it and start it again; nothing is lost"),
                             {}});
    }
    const size_t names = GPPIPCManager::Get()->CountStrayNames();
    if (names > 0)
        findings.append(
            {"names-left",
             QStringLiteral("Names are left of receivers that have ended, without a queue: %1.").arg(names),
             QStringLiteral("hopboxctl channel clean"), Clean, false});
}

void Doctor::LookAtWorkFolder(QVector<Finding>& findings)
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary)
                                 .GetChild(HopboxFolder::MakeName(PSystem::GetLogonName()));
    qint64 bytes = 0;
    QDirIterator files(folder.GetNativePath(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        bytes += files.fileInfo().size();
    }
    if (bytes > 0)
        findings.append(
            {"work-folder",
             QStringLiteral("PDFs and packages of %1 bytes are kept in \"%2\".")
                 .arg(bytes)
                 .arg(folder.GetNativePath()),
             QStringLiteral("delete what you don't need; RemoveResultsAfterDays does it by itself"),
             {},
             false});
}
