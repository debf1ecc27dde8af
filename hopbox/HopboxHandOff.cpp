#include "hopbox/HopboxHandOff.h"

#include "foundation/core/GStringSupport.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/PSystem.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxMessages.h"

#include <algorithm>
#include <exception>

using HopboxHandOff::OwnProcess;

namespace
{
constexpr int32_t cPort = 10987;

const GString cSource = QStringLiteral("HopboxHandOff::Deliver");

const GString& GetPortName()
{
    static const GString name = GStringSupport::FromInt32(cPort);
    return name;
}

HopboxJobTicket MakeTicket(const GString& printerName, const GString& jobLocation)
{
    HopboxJobTicket ticket;
    ticket.userName = PSystem::GetLogonName();
    ticket.jobPath = jobLocation;
    ticket.printerName = printerName;
    ticket.portName = GetPortName();
    ticket.copyCount = 1;
    return ticket;
}

std::vector<uint32_t> ListProcesses(OwnProcess ownProcess)
{
    std::vector<uint32_t> processes = GProcessInfo::GetProcessIDs(HopboxMessage::cProcessImage);
    if (ownProcess == OwnProcess::cLeaveOut) {
        const uint32_t own = GProcessInfo::GetOwnProcessID();
        processes.erase(std::remove(processes.begin(), processes.end(), own), processes.end());
    }
    return processes;
}

// Sends a message to every process that can be reached. The first failure ends it; the result is what was
// sent until then.
bool Deliver(int32_t kind, const GBuffer& payload, OwnProcess ownProcess)
{
    bool isSent = false;
    try {
        const std::vector<uint32_t> processes = ListProcesses(ownProcess);
        const std::shared_ptr<GPPIPCManager> manager = GPPIPCManager::Get();
        for (const uint32_t process : processes) {
            if (manager->GetReceiverState(process) != GPPIPCState::Reachable)
                continue;
            manager->Post(process, kind, payload);
            isSent = true;
            GTrace::Debug(cSource, QStringLiteral("Process %1 was sent message %2.").arg(process).arg(kind));
        }
    } catch (const std::exception& error) {
        GTrace::Error(cSource, GString::fromUtf8(error.what()));
    }
    return isSent;
}
}  // namespace

bool HopboxHandOff::SubmitJob(const GString& printerName, const GString& jobLocation)
{
    const GString ticket = MakeTicket(printerName, jobLocation).ToText();
    return Deliver(HopboxMessage::cSubmitJob, ticket.toUtf8(), OwnProcess::cLeaveOut);
}

bool HopboxHandOff::NotifyHopboxProcesses(OwnProcess ownProcess)
{
    return Deliver(HopboxMessage::cNotify, GBuffer(), ownProcess);
}
