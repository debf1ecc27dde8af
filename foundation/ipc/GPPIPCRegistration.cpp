#include "foundation/ipc/GPPIPCRegistration.h"

#include "foundation/core/GException.h"
#include "foundation/core/GMessageLoop.h"
#include "foundation/trace/GTrace.h"

// How long the thread waits before it looks whether the memory that it waits in is still there.
static constexpr std::chrono::milliseconds cWait(1000);

GPPIPCRegistration::GPPIPCRegistration(const std::shared_ptr<GPPIPCChannel>& channel, uint32_t receiver,
                                       uint64_t keeper, const GPPIPCAddresses& addresses)
    : mChannel(channel),
      mReceiver(receiver),
      mQueue(channel->Register(receiver, keeper, addresses)),
      mWaiter([this] { WaitForMessages(); })
{
}

GPPIPCRegistration::~GPPIPCRegistration()
{
    mIsEnding = true;
    if (mQueue->CanWait())
        mQueue->WakeUp();
    mWaiter.join();
}

void GPPIPCRegistration::WaitForMessages()
{
    try {
        while (!mIsEnding && mQueue->CanWait()) {
            if (mQueue->WaitForMessage(cWait) && !mIsEnding)
                GMessageLoop::TickSoon();
        }
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPPIPCRegistration::WaitForMessages"), error.GetDescription());
    }
}

bool GPPIPCRegistration::IsListed()
{
    try {
        return mChannel->IsRegistered(mReceiver);
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPPIPCRegistration::Renew"), error.GetDescription());
        return false;
    }
}

bool GPPIPCRegistration::Renew()
{
    if (!mQueue->IsCurrent())
        return false;
    if (!IsListed()) {
        GTrace::Error(QStringLiteral("GPPIPCRegistration::Renew"),
                      QStringLiteral("The channel's directory has lost this receiver; it is entered again."));
        mChannel->EnterAgain(mReceiver);
    }
    return true;
}

void GPPIPCRegistration::Close()
{
    if (GMessageQueue* const queue = GetQueue())
        queue->Close();
}

void GPPIPCRegistration::Deregister()
{
    mChannel->Deregister(mReceiver, *mQueue);
}
