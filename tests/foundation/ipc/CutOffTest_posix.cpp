#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GSharedSegment.h"

#include "IpcFixture.h"

#include <unistd.h>

#include <cstring>

// What befalls the files of the channel while a receiver and a sender have them open. On Windows nobody can
// take away or cut short what is open.
namespace
{
void Overwrite(const QString& path, int offset, const QByteArray& bytes)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadWrite | QIODevice::Unbuffered) && file.seek(offset));
    EXPECT_EQ(file.write(bytes), bytes.size());
    EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
}

void CutShort(const QString& path)
{
    EXPECT_EQ(::truncate(QFile::encodeName(path).constData(), 0), 0);
}

class CutOffTest : public IpcTest
{
protected:
    QString GetQueue() const
    {
        const GSharedSegment directory(GetChannelName(), GPPIPCDirectory::cSize, GSharedSegment::Mode::Open);
        return GetQueueName(mOwnID, GPPIPCDirectory(directory.GetData()).GetPairs().front().receiver);
    }

    const uint32_t mOwnID = GProcessInfo::GetOwnProcessID();
};
}  // namespace

TEST_F(CutOffTest, ReceiverIsFoundAgainAndNothingPostedIsLost)
{
    using Damage = std::function<void(const QString& directory, const QString& queue)>;
    const struct
    {
        const char* name;
        Damage damage;
        bool losesQueue;
    } cases[] = {
        {"all names", [](auto& d, auto&) { QDir(QFileInfo(d).path()).removeRecursively(); }, false},
        {"directory", [](auto& d, auto&) { QFile::remove(d); }, false},
        {"directory's lock", [](auto& d, auto&) { QFile::remove(d + "_L"_q); }, false},
        {"queue", [](auto&, auto& q) { QFile::remove(q); }, false},
        {"queue's lock", [](auto&, auto& q) { QFile::remove(q + "_L"_q); }, false},
        {"queue's semaphore", [](auto&, auto& q) { QFile::remove(q + "_S"_q); }, false},
        {"pairs", [](auto& d, auto&) { Overwrite(d, 8, QByteArray(4, 0)); }, false},
        {"header", [](auto& d, auto&) { Overwrite(d, 0, "damaged"); }, false},
        {"directory cut", [](auto& d, auto&) { CutShort(d); }, false},
        {"directory's lock cut", [](auto& d, auto&) { CutShort(d + "_L"_q); }, false},
        {"lock's header",
         [](auto& d, auto&) {
             QFile::remove(d + "_L"_q);
             Overwrite(d + "_L"_q, 0, QByteArray(64, 'x'));
         },
         false},
        {"queue cut", [](auto&, auto& q) { CutShort(q); }, true},
        {"queue's lock cut", [](auto&, auto& q) { CutShort(q + "_L"_q); }, false},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.name);
        const Sandbox sandbox;
        const auto manager = GPPIPCManager::Get();
        std::vector<GBuffer> payloads;
        GPPIPCReceiver receiver([&](const GPPIPCMessage& message) { payloads.push_back(message.payload); });
        manager->Post(mOwnID, 1, "before");
        test.damage(GetChannelName(), GetQueue());
        GetErrorCode([&] { manager->Post(mOwnID, 1, "meanwhile"); });
        receiver.LookAfterPlaces();
        EXPECT_EQ(manager->GetReceiverState(mOwnID), GPPIPCState::Reachable);
        manager->Post(mOwnID, 1, "after");
        receiver.TakeUp();
        payloads.erase(std::remove(payloads.begin(), payloads.end(), "meanwhile"), payloads.end());
        EXPECT_EQ(payloads, test.losesQueue ? std::vector<GBuffer>({"after"})
                                            : std::vector<GBuffer>({"before", "after"}));
    }
}

TEST_F(CutOffTest, LockThatOutlivedTheMachinesStartOrWasCopiedIsFree)
{
    const GString name = GetName("lock");
    ChildProcess holder("HoldLock"_q, {name});
    ASSERT_EQ(holder.ReadLine(), "held");
    ASSERT_TRUE(QFile::copy(name, name + "2"_q));
    EXPECT_FALSE(GInterProcessMutex(name).Lock(std::chrono::milliseconds(0)));
    GInterProcessMutex copied(name + "2"_q);
    EXPECT_TRUE(copied.Lock(std::chrono::milliseconds(0)));
    copied.Unlock();
    Overwrite(name, 8, "earlier!");
    GInterProcessMutex old(name);
    EXPECT_TRUE(old.Lock(std::chrono::milliseconds(0)));
    old.Unlock();
}
