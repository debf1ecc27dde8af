#pragma once

#include "foundation/core/GErrorCodes.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSessionInfo.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ErrorCode.h"
#include "tests/support/Test.h"

#include <QDir>
#include <QFileInfo>

// Names of its own for every shared object.
class IpcTest : public testing::Test
{
protected:
    static GString GetName(const char* name)
    {
        return GSessionInfo::GetObjectNamePrefix() + QLatin1String(name);
    }
    static GString GetChannelName() { return GetName("201_PP"); }
    static GString GetQueueName(uint32_t process, uint32_t receiver)
    {
        return "%1_%2_%3"_q.arg(GetChannelName(), QString::number(process), QString::number(receiver));
    }

    // The names of the shared objects that are there, as far as the system shows them; none on Windows.
    static QStringList ListObjects()
    {
        const QFileInfo prefix(GetName(""));
        return QDir(prefix.path()).entryList({prefix.fileName() + QLatin1Char('*')}, QDir::Files);
    }

    Sandbox mSandbox;
};

// A child that has a receiver and says a line for each message: sender, kind, payload.
class ReceivingChild : public ChildProcess
{
public:
    ReceivingChild() : ChildProcess("Receive"_q, {}) { EXPECT_EQ(ReadLine(), "ready"); }

    uint32_t GetID() const { return static_cast<uint32_t>(GetProcessID()); }
};
