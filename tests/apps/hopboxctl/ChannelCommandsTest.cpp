#include "tests/support/PrinterProcessor.h"

#include "CommandFixture.h"

class ChannelCommandsTest : public CommandTest
{
protected:
    int Channel(const char* command, const QStringList& more = {})
    {
        return Run(QStringList{"channel"_q, QLatin1String(command)} + more);
    }

    // Each receiver as "PROCESS STATE TAKES".
    QStringList List()
    {
        EXPECT_EQ(Channel("list", {"--json"_q}), 0);
        QStringList lines;
        for (const QJsonValue& receiver : GetResult().toArray())
            lines.append("%1 %2 %3"_q.arg(receiver["process"_q].toInt())
                             .arg(receiver["state"_q].toString(),
                                  receiver["takes"_q].toVariant().toStringList().join(QLatin1Char('+'))));
        return lines;
    }
};

TEST_F(ChannelCommandsTest, ReceiversAreListedWithWhatTheyTakeAndWhatIsLeftIsRemoved)
{
    EXPECT_EQ(Channel("list"), 0);
    EXPECT_EQ(mOutput, "No receiver is there.\n");
    WriteFile(GetPath("a.pdf"), "1");
    PrinterProcessor all(mSandbox, {});
    PrinterProcessor some(mSandbox, {"--hopbox"_q, "A"_q, "--hopbox"_q, "B"_q});
    const QStringList running = {"%1 running "_q.arg(all.GetProcessID()),
                                 "%1 running A+B"_q.arg(some.GetProcessID())};
    EXPECT_EQ(List(), running);
    all.Kill();
    EXPECT_EQ(List(), QStringList({"%1 ended "_q.arg(all.GetProcessID()), running.at(1)}));
    EXPECT_EQ(Channel("clean"), 0);
    EXPECT_TRUE(mOutput.endsWith(" removed.\n"));
    EXPECT_EQ(List(), running.mid(1));
    EXPECT_EQ(Channel("clean"), 0);
    EXPECT_EQ(mOutput, "Nothing was left.\n");
}

TEST_F(ChannelCommandsTest, WatchShowsEachChangeUntilItsTimeIsUp)
{
    QProcess watch;
    watch.start(GetProgramPath("hopboxctl"), {"channel"_q, "watch"_q});
    const auto waitFor = [&](const QByteArray& text) {
        while (!mOutput.contains(text) && watch.waitForReadyRead())
            mOutput += watch.readAllStandardOutput();
        return mOutput.contains(text);
    };
    EXPECT_TRUE(waitFor("No receiver is there."));
    {
        const PrinterProcessor receiver(mSandbox, {"--hopbox"_q, "Press"_q});
        EXPECT_TRUE(waitFor(QByteArray::number(receiver.GetProcessID()) + "  "));
    }
    watch.kill();
    watch.waitForFinished();
    EXPECT_EQ(Channel("watch", {"--seconds"_q, "0.1"_q, "--json"_q}), 0);
    EXPECT_TRUE(GetResult().isArray());
    EXPECT_EQ(Channel("watch", {"--seconds"_q, "x"_q}), 2);
}
