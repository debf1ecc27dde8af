#include "hopbox/HopboxHandOff.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/PSystem.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxMessages.h"

#include <algorithm>
#include <exception>

using HopboxHandOff::Delivery;
using HopboxHandOff::OwnProcess;
using HopboxHandOff::Report;

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

// What goes to each process, and for which Hopbox; for all of them where that is empty.
struct Parcel
{
    int32_t kind;
    GBuffer payload;
    GString hopbox;
};

// Sends one process the message if it can be reached. What raises ends the walk, and is noted here first.
void DeliverTo(GPPIPCManager& manager, uint32_t process, const Parcel& parcel, Report& report)
{
    report.deliveries.push_back({process, false, 0, GString()});
    Delivery& delivery = report.deliveries.back();
    try {
        GResult reason = GResult::Success();
        if (manager.GetReceiverState(process, &reason, parcel.hopbox) == GPPIPCState::Reachable) {
            manager.Post(process, parcel.kind, parcel.payload, parcel.hopbox);
            delivery.isSent = true;
        }
        delivery.code = reason.GetCode();
        delivery.reason = reason.GetReason();
    } catch (const GException& error) {
        delivery.code = error.GetCode();
        delivery.reason = error.GetDescription();
        throw;
    }
}

void Walk(const Parcel& parcel, OwnProcess ownProcess, Report& report)
{
    const std::vector<uint32_t> processes = ListProcesses(ownProcess);
    const std::shared_ptr<GPPIPCManager> manager = GPPIPCManager::Get();
    for (const uint32_t process : processes)
        DeliverTo(*manager, process, parcel, report);
    if (processes.empty())
        report.reason = QStringLiteral("No process \"%1\" is running.").arg(HopboxMessage::cProcessImage);
}

void Log(const Report& report)
{
    for (const Delivery& delivery : report.deliveries) {
        if (delivery.isSent)
            GTrace::Debug(cSource, QStringLiteral("Process %1 was sent the message.").arg(delivery.process));
        else
            GTrace::Error(cSource, QStringLiteral("Process %1 was not sent the message (%2): %3")
                                       .arg(QString::number(delivery.process), QString::number(delivery.code),
                                            delivery.reason));
    }
    if (!report.reason.isEmpty())
        GTrace::Error(cSource, report.reason);
}

// Sends a message to every process that can be reached. The first failure ends it; the result is what was
// sent until then.
bool Deliver(const Parcel& parcel, OwnProcess ownProcess, Report* wanted)
{
    Report own;
    Report& report = wanted != nullptr ? *wanted : own;
    report = Report();
    try {
        Walk(parcel, ownProcess, report);
    } catch (const std::exception& error) {
        report.reason = GString::fromUtf8(error.what());
    }
    Log(report);
    return std::any_of(report.deliveries.cbegin(), report.deliveries.cend(),
                       [](const Delivery& delivery) { return delivery.isSent; });
}
}  // namespace

bool HopboxHandOff::SubmitJob(const GString& printerName, const GString& jobLocation, Report* report)
{
    const GString ticket = MakeTicket(printerName, jobLocation).ToText();
    return Deliver({HopboxMessage::cSubmitJob, ticket.toUtf8(), printerName}, OwnProcess::cLeaveOut, report);
}

bool HopboxHandOff::NotifyHopboxProcesses(OwnProcess ownProcess, Report* report)
{
    return Deliver({HopboxMessage::cNotify, GBuffer(), GString()}, ownProcess, report);
}
