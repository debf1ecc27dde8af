#include "foundation/ipc/GPPIPCReceiver.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"

#include <exception>

GPPIPCReceiver::GPPIPCReceiver(Handler handler, GPPIPCChannelKind kind)
    : mHandler(std::move(handler)),
      mManager(GPPIPCManager::Get(kind)),
      mReceiverID(GPPIPCManager::MakeReceiverID())
{
    try {
        Register(mManager->mSessionChannel.get());
        if (mManager->mGlobalChannel)
            Register(mManager->mGlobalChannel.get());
    } catch (...) {
        Deregister();
        throw;
    }
    GMessageLoop::GetTickSignal().Attach(*this);
}

void GPPIPCReceiver::Receive(int32_t message, const GTick&)
{
    if (message == GMessageLoop::cTickMessage)
        TakeUp();
}

void GPPIPCReceiver::Register(GPPIPCChannel* channel)
{
    mEntries.push_back({channel, channel->Register(mReceiverID)});
}

GPPIPCReceiver::~GPPIPCReceiver()
{
    GMessageLoop::GetTickSignal().Detach(*this);
    for (const Entry& entry : mEntries) {
        try {
            entry.queue->Close();
        } catch (const GException& error) {
            GTrace::Error(QStringLiteral("GPPIPCReceiver::~GPPIPCReceiver"), error.GetDescription());
        }
    }
    TakeUp();
    Deregister();
}

void GPPIPCReceiver::Deregister()
{
    for (const Entry& entry : mEntries) {
        try {
            entry.channel->Deregister(mReceiverID);
        } catch (const GException& error) {
            GTrace::Error(QStringLiteral("GPPIPCReceiver::Deregister"), error.GetDescription());
        }
    }
}

void GPPIPCReceiver::TakeUp()
{
    try {
        for (const Entry& entry : mEntries)
            Collect(entry.queue.get());
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::TakeUp"), error.GetDescription());
    }
    if (mIsHandingOver)
        return;
    mIsHandingOver = true;
    while (!mWaiting.empty()) {
        const GPPIPCMessage message = mWaiting.front();
        mWaiting.pop_front();
        HandOver(message);
    }
    mIsHandingOver = false;
}

void GPPIPCReceiver::Collect(GMessageQueue* queue)
{
    for (const GBuffer& bytes : queue->TakeAll()) {
        GPPIPCMessage message;
        if (GPPIPCMessage::Decode(bytes, &message) && message.receiver == mReceiverID)
            mWaiting.push_back(message);
        else
            GTrace::Error(QStringLiteral("GPPIPCReceiver::Collect"),
                          QStringLiteral("A queued message does not check and is skipped."));
    }
}

void GPPIPCReceiver::HandOver(const GPPIPCMessage& message)
{
    try {
        mHandler(message);
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::HandOver"), QString::fromUtf8(error.what()));
    } catch (...) {
        GTrace::Error(QStringLiteral("GPPIPCReceiver::HandOver"),
                      QStringLiteral("The handler threw something that is no exception."));
    }
}
