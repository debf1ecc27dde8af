#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/ipc/GPPIPCReceiver.h"
#include "foundation/system/GProcessInfo.h"
#include "hopbox/HopboxHandOff.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QJsonDocument>
#include <QJsonObject>

// The sample that was written from the channel's page: it shows that the page says what the channel does.
namespace
{
class SampleReceiver : public ChildProcess
{
public:
    explicit SampleReceiver(const QStringList& arguments)
    {
        mProcess.start("python3"_q, QStringList{QStringLiteral(SAMPLE_RECEIVER)} + arguments);
        mProcess.setReadChannel(QProcess::StandardError);
        EXPECT_TRUE(ReadLine().startsWith("ready as process "));
        mProcess.setReadChannel(QProcess::StandardOutput);
    }
    uint32_t GetID() const { return static_cast<uint32_t>(mProcess.processId()); }
    QJsonObject ReadMessage() { return QJsonDocument::fromJson(ReadLine()).object(); }
    void Stop() { mProcess.terminate(); }
};
}  // namespace

TEST(SampleReceiver, TakesWhatTheProductSendsBesideAReceiverOfOurs)
{
    const Sandbox sandbox;
    const auto manager = GPPIPCManager::Get();
    const GPPIPCReceiver ours([](const GPPIPCMessage&) {});
    constexpr int cCount = 40;  // of 20,000 bytes: the ring is gone round more than twice
    SampleReceiver sample({"--count"_q, QString::number(cCount + 1)});
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Gr\u00F6\u00DFe"_q, "/a.pdf"_q));
    const QJsonObject job = sample.ReadMessage();
    EXPECT_EQ(job.value("kind"_q).toInt(), 145);
    EXPECT_EQ(job.value("process"_q).toInt(), static_cast<int>(GProcessInfo::GetOwnProcessID()));
    EXPECT_TRUE(job.value("payload"_q).toString().contains("\"PrinterName\" \"Gr\u00F6\u00DFe\""_q));
    for (int number = 0; number < cCount; ++number) {
        const GBuffer payload = GBuffer::number(number) + GBuffer(20000, 'x');
        manager->Post(sample.GetID(), 7, payload);
        EXPECT_EQ(sample.ReadMessage().value("payload"_q).toString().toUtf8(), payload) << number;
    }
    EXPECT_EQ(sample.WaitForExit(), 0);
    EXPECT_EQ(manager->GetReceiverState(GProcessInfo::GetOwnProcessID()), GPPIPCState::Reachable);
}

TEST(SampleReceiver, LeavesNothingWhenItIsStopped)
{
    const Sandbox sandbox;
    SampleReceiver sample({});
    EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(sample.GetID()), GPPIPCState::Reachable);
    sample.Stop();
    EXPECT_EQ(sample.WaitForExit(), 0);
    EXPECT_EQ(ReadTree(sandbox.GetPath()).keys().filter("Morvane_"_q), QStringList());
}
