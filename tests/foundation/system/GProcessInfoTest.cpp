#include "foundation/core/GPathName.h"
#include "foundation/system/GProcessInfo.h"
#include "foundation/system/GSessionInfo.h"
#include "foundation/system/PSystem.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QCoreApplication>

#include <algorithm>

CHILD_ROLE(StayAlive)
{
    SayToParent("alive");
    HearFromParent();
    return 0;
}

static bool IsListed(const GString& imageName, uint32_t processID)
{
    const std::vector<uint32_t> processIDs = GProcessInfo::GetProcessIDs(imageName);
    return std::count(processIDs.begin(), processIDs.end(), processID) == 1;
}

TEST(GProcessInfo, ProcessIsFoundByItsImageUntilItIsKilled)
{
    ChildProcess child(QStringLiteral("StayAlive"), {});
    ASSERT_EQ(child.ReadLine(), "alive");
    const auto processID = static_cast<uint32_t>(child.GetProcessID());
    const GString image = GPathName(QCoreApplication::applicationFilePath()).GetLeaf();
    const bool isWindows = image.endsWith(QLatin1String(".exe"));
    EXPECT_TRUE(IsListed(image, processID));
    EXPECT_TRUE(IsListed(image, GProcessInfo::GetOwnProcessID()));
    EXPECT_EQ(IsListed(image.toUpper(), processID), isWindows);
    EXPECT_FALSE(IsListed(image.left(15), processID)) << "The system's own short names end there.";

    const uint64_t startTime = GProcessInfo::GetStartTime(processID);
    EXPECT_NE(startTime, 0u);
    EXPECT_EQ(startTime, GProcessInfo::GetStartTime(processID));
    EXPECT_EQ(GSessionInfo::GetSessionID(processID), GSessionInfo::GetOwnSessionID());
    EXPECT_TRUE(GProcessInfo::IsAlive(processID));
    child.Kill();
    EXPECT_FALSE(GProcessInfo::IsAlive(processID));
    EXPECT_EQ(GProcessInfo::GetStartTime(processID), 0u);
    EXPECT_FALSE(IsListed(image, processID));
}

TEST(GSessionInfo, RootsNeverShareNamedObjects)
{
    const Sandbox sandbox;
    const GString prefix = GSessionInfo::GetObjectNamePrefix();
    EXPECT_EQ(prefix, GSessionInfo::GetObjectNamePrefix());
    {
        const Sandbox other;
        EXPECT_NE(prefix, GSessionInfo::GetObjectNamePrefix());
    }
    qunsetenv("MORVANE_ROOT");
    EXPECT_NE(prefix, GSessionInfo::GetObjectNamePrefix());
}

TEST(PSystem, LogonNameIsThatOfWhoeverOwnsWhatThisProcessMakes)
{
    const Sandbox sandbox;
    const QString owner = QFileInfo(sandbox.GetPath()).owner();  // empty on Windows
    EXPECT_FALSE(PSystem::GetLogonName().isEmpty());
    EXPECT_EQ(PSystem::GetLogonName(), owner.isEmpty() ? PSystem::GetLogonName() : owner);
}
