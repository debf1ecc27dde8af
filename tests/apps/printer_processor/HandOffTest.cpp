#include "foundation/core/GErrorCodes.h"
#include "foundation/ipc/GInterProcessMutex.h"
#include "foundation/ipc/GPPIPCDirectory.h"
#include "foundation/ipc/GPPIPCManager.h"
#include "foundation/ipc/GSharedSegment.h"
#include "foundation/system/GSessionInfo.h"
#include "foundation/system/PSystem.h"
#include "hopbox/HopboxHandOff.h"
#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QCoreApplication>

#include <algorithm>

using HopboxHandOff::OwnProcess;

static const GString cJob = "/jobs/\u65E5\u672C \"1\"\\ \U0001F4E6.pdf"_q;

static bool Submit()
{
    return HopboxHandOff::SubmitJob("Gr\u00F6\u00DFe"_q, cJob);
}

TEST(HandOff, TwoReceiversBothGetTheJobIntact)
{
    const Sandbox sandbox;
    PrinterProcessor first(sandbox, "--count|2"_list);
    PrinterProcessor second(sandbox, "--count|2"_list);
    EXPECT_TRUE(Submit());
    EXPECT_TRUE(HopboxHandOff::NotifyHopboxProcesses(OwnProcess::cLeaveOut));
    const QJsonObject job = {{"kind"_q, 145},
                             {"sender"_q, QCoreApplication::applicationPid()},
                             {"UserName"_q, PSystem::GetLogonName()},
                             {"JobPath"_q, cJob},
                             {"PrinterName"_q, "Gr\u00F6\u00DFe"_q},
                             {"PortName"_q, "10987"_q},
                             {"CopyCount"_q, 1},
                             {"PrinterID"_q, QString()},
                             {"valid"_q, true}};
    for (PrinterProcessor* receiver : {&first, &second}) {
        EXPECT_EQ(receiver->ReadLine(), job);
        EXPECT_EQ(receiver->ReadLine().value("kind"_q).toInt(), 146);
        EXPECT_EQ(receiver->WaitForExit(), 0);
    }
    EXPECT_FALSE(Submit());
}

TEST(HandOff, WhoCanNotBeReachedIsPassedOver)
{
    const Sandbox other;
    const Sandbox sandbox;
    EXPECT_FALSE(Submit());
    // One with the image name but without a receiver on this channel.
    const PrinterProcessor stranger(other, {});
    EXPECT_FALSE(Submit());
    PrinterProcessor killed(sandbox, {});
    PrinterProcessor alive(sandbox, {});
    killed.Kill();
    EXPECT_TRUE(Submit());
    EXPECT_EQ(alive.ReadLine().value("JobPath"_q).toString(), cJob);
    alive.Kill();
    EXPECT_FALSE(Submit());
    EXPECT_FALSE(HopboxHandOff::NotifyHopboxProcesses(OwnProcess::cInclude));
}

TEST(HandOff, ReceiversOfOtherHopboxesCountAsNotRunning)
{
    const Sandbox sandbox;
    HopboxRegistry registry;
    GString key;
    ASSERT_TRUE(registry.AddEntry("Shop"_q, {}, &key));
    const QString inbox = sandbox.GetPath("in"_q);
    WriteFile(sandbox.GetPath("a.pdf"_q), "1");
    const QString job = QDir::toNativeSeparators(sandbox.GetPath("a.pdf"_q));
    PrinterProcessor some(sandbox, {"--inbox"_q, inbox, "--hopbox"_q, "Press"_q, "--hopbox"_q, key});
    HopboxHandOff::Report report;
    EXPECT_FALSE(HopboxHandOff::SubmitJob("Proof"_q, job, &report));
    // Others may have receivers of their own.
    const auto delivery = std::find_if(report.deliveries.cbegin(), report.deliveries.cend(),
                                       [&](const auto& one) { return one.process == some.GetProcessID(); });
    ASSERT_TRUE(delivery != report.deliveries.cend());
    EXPECT_EQ(delivery->reason, "The process takes messages for \"Press\", \"Shop\" only."_q);
    for (const char* name : {"Press", "Shop"}) {
        EXPECT_TRUE(HopboxHandOff::SubmitJob(QLatin1String(name), job));
        EXPECT_EQ(some.ReadLine().value("PrinterName"_q).toString(), QLatin1String(name));
    }
    PrinterProcessor all(sandbox, {});
    EXPECT_TRUE(HopboxHandOff::SubmitJob("Proof"_q, job));
    EXPECT_EQ(all.ReadLine().value("PrinterName"_q).toString(), "Proof"_q);
    EXPECT_TRUE(HopboxHandOff::NotifyHopboxProcesses(OwnProcess::cLeaveOut));
    EXPECT_EQ(some.ReadLine().value("kind"_q).toInt(), 146);
    // Whoever does not ask gets nothing into the inbox all the same.
    HopboxJobTicket ticket{"anna"_q, job, "Proof"_q, "10987"_q, 1, {}};
    GPPIPCManager::Get()->Post(some.GetProcessID(), 145, ticket.ToText().toUtf8());
    EXPECT_EQ(some.ReadLine().value("error"_q).toString(),
              "The receiver takes jobs of \"Press\", \"Shop\" only."_q);
    EXPECT_EQ(QDir(inbox).entryList(QDir::Files), "a-2.pdf|a.pdf"_list);
}

TEST(HandOff, DamageHasItsReasonAndCodeAndEndsTheWalk)
{
    const Sandbox other;
    const PrinterProcessor first(other, {});
    const PrinterProcessor second(other, {});
    // Where no receiver is that would mend it.
    const Sandbox sandbox;
    const GString name = GSessionInfo::GetObjectNamePrefix() + QLatin1String("201_PP");
    const GInterProcessMutex lock(name + QLatin1String("_L"));
    const GSharedSegment directory(name, GPPIPCDirectory::cSize, GSharedSegment::Mode::OpenOrCreate);
    std::fill_n(directory.GetData(), 4, uint8_t('x'));
    HopboxHandOff::Report report;
    EXPECT_FALSE(HopboxHandOff::SubmitJob("Press"_q, cJob, &report));
    ASSERT_EQ(report.deliveries.size(), 1U);
    EXPECT_EQ(report.deliveries.front().code, GErrorCode::cSegmentHeader);
    EXPECT_TRUE(report.deliveries.front().reason.contains("is damaged"_q));
    EXPECT_EQ(report.reason, report.deliveries.front().reason);
}

TEST(PrinterProcessor, DeregistersWhenItsTimeIsUpOrItsCountIsReached)
{
    const Sandbox sandbox;
    const std::tuple<QStringList, bool, int> cases[] = {
        {"--count|1"_list, true, 0},
        {"--timeout|0.5"_list, false, 0},
        {"--timeout|0.5|--count|9"_list, false, 1},
    };
    for (const auto& [arguments, isSent, status] : cases) {
        SCOPED_TRACE(arguments.join(QLatin1Char(' ')).toStdString());
        PrinterProcessor receiver(sandbox, arguments);
        EXPECT_EQ(isSent && Submit(), isSent);
        EXPECT_EQ(receiver.WaitForExit(), status);
        EXPECT_EQ(GPPIPCManager::Get()->GetReceiverState(receiver.GetProcessID()), GPPIPCState::NoReceiver);
    }
}
