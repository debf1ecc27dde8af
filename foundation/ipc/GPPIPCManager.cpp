#include "foundation/ipc/GPPIPCManager.h"

#include "foundation/core/GException.h"
#include "foundation/ipc/GPPIPCMessage.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSessionInfo.h"
#include "foundation/trace/GTrace.h"

#include <atomic>
#include <map>
#include <mutex>

namespace
{
struct Managers
{
    std::mutex mutex;
    std::map<GPPIPCChannelKind, std::weak_ptr<GPPIPCManager>> byKind;
};

Managers& GetManagers()
{
    static Managers managers;
    return managers;
}

GString GetChannelName(const GString& prefix, GPPIPCChannelKind kind)
{
    return prefix + QString::number(static_cast<int>(kind)) + QLatin1String("_PP");
}

std::unique_ptr<GPPIPCChannel> TryToOpen(const GString& name)
{
    try {
        return std::make_unique<GPPIPCChannel>(name);
    } catch (const GException& error) {
        GTrace::Debug(QStringLiteral("GPPIPCManager::GPPIPCManager"), error.GetDescription());
        return nullptr;
    }
}
}  // namespace

std::shared_ptr<GPPIPCManager> GPPIPCManager::Get(GPPIPCChannelKind kind)
{
    Managers& managers = GetManagers();
    const std::lock_guard<std::mutex> guard(managers.mutex);
    std::weak_ptr<GPPIPCManager>& known = managers.byKind[kind];
    std::shared_ptr<GPPIPCManager> manager = known.lock();
    if (!manager) {
        manager.reset(new GPPIPCManager(kind));
        known = manager;
    }
    return manager;
}

GPPIPCManager::GPPIPCManager(GPPIPCChannelKind kind)
{
    const GString sessionName = GetChannelName(GSessionInfo::GetObjectNamePrefix(), kind);
    const GString globalName = GetChannelName(GSessionInfo::GetGlobalObjectNamePrefix(), kind);
    mSessionChannel = std::make_unique<GPPIPCChannel>(sessionName);
    if (globalName != sessionName)
        mGlobalChannel = TryToOpen(globalName);
}

GPPIPCChannel& GPPIPCManager::GetChannel(uint32_t process)
{
    const bool isElsewhere = GSessionInfo::GetSessionID(process) != GSessionInfo::GetOwnSessionID();
    return isElsewhere && mGlobalChannel ? *mGlobalChannel : *mSessionChannel;
}

GPPIPCState GPPIPCManager::GetReceiverState(uint32_t process)
{
    return GetChannel(process).GetReceiverState(process);
}

void GPPIPCManager::Post(uint32_t process, int32_t kind, const GBuffer& payload)
{
    GPPIPCChannel& channel = GetChannel(process);
    GPPIPCMessage message;
    message.session = GSessionInfo::GetOwnSessionID();
    message.process = GProcessInfo::GetOwnProcessID();
    message.kind = kind;
    message.flag = &channel == mGlobalChannel.get() ? GPPIPCMessage::cThroughGlobalChannel : 0;
    message.payload = payload;
    channel.Post(process, message, mPolicy);
}

// Never the same twice in a process.
uint32_t GPPIPCManager::MakeReceiverID()
{
    static std::atomic<uint32_t> last{0};
    return ++last;
}
