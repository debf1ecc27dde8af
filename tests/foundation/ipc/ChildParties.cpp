#include "foundation/ipc/GInterProcessSemaphore.h"

#include "IpcFixture.h"

#include <chrono>
#include <thread>

// A message of kind 0 ends it.
CHILD_ROLE(Receive)
{
    bool isEnded = false;
    GPPIPCReceiver receiver([&isEnded](const GPPIPCMessage& message) {
        isEnded = isEnded || message.kind == 0;
        SayToParent(QByteArray::number(message.process) + ' ' + QByteArray::number(message.kind) + ' ' +
                    message.payload);
    });
    SayToParent("ready");
    while (!isEnded) {
        receiver.TakeUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return 0;
}

// Posts the numbers from 0 to COUNT to a process, each in a message of SIZE bytes; says how many failed with
// the code of a failed post.
CHILD_ROLE(Post)
{
    const uint32_t target = arguments.at(0).toUInt();
    const int count = arguments.at(1).toInt();
    const int size = arguments.at(2).toInt();
    const auto manager = GPPIPCManager::Get();
    SayToParent("ready");
    HearFromParent();
    QByteArray failed;
    for (int number = 0; number < count; ++number) {
        const QByteArray text = QByteArray::number(number);
        const int32_t code =
            GetErrorCode([&] { manager->Post(target, 145, text + QByteArray(size - text.size(), '.')); });
        if (code == GErrorCode::cPostMessage)
            failed += ' ' + text;
        else if (code != 0)
            return 1;
    }
    SayToParent("failed" + failed);
    return 0;
}

// Takes a lock by its name and keeps it.
CHILD_ROLE(HoldLock)
{
    GInterProcessMutex mutex(arguments.at(0));
    const GInterProcessLock lock(mutex);
    SayToParent("held");
    HearFromParent();
    return 0;
}

CHILD_ROLE(ReleaseSemaphore)
{
    GInterProcessSemaphore(arguments.at(0), 0).Release();
    return 0;
}

// A process of the image name without a receiver.
CHILD_ROLE(Idle)
{
    SayToParent("ready");
    HearFromParent();
    return 0;
}
