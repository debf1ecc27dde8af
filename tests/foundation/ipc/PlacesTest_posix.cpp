#include "IpcFixture.h"
#include "tests/support/FaultyDisk.h"
#include "tests/support/SecondUser.h"

#include <QEventLoop>
#include <QTimer>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

// Where the objects are without a root of their own. Each role sees folders of its own there.
namespace
{
constexpr int cNoDisk = 77;
constexpr int cDiskSize = 4 * 1024 * 1024;

const QString cShared = QStringLiteral("/dev/shm");

bool HideRealPlaces()
{
    qunsetenv("MORVANE_ROOT");
    return MountSmallDisk(cShared, cDiskSize) && MountSmallDisk("/run"_q, cDiskSize) &&
           QDir().mkdir("/run/user"_q);
}

QByteArray GetUserFolder()
{
    return "/run/user/" + QByteArray::number(::geteuid());
}

// As another user: takes the directory's name in the shared place.
bool OccupySharedPlace(const GString& name)
{
    const pid_t child = ::fork();
    if (child == 0) {
        ::umask(0);
        const bool isDone = BecomeSecondUser() &&
                            ::open(QFile::encodeName(name).constData(), O_RDWR | O_CREAT | O_EXCL, 0666) >= 0;
        ::_exit(isDone ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

QString GetRefusal()
{
    try {
        GPPIPCReceiver receiver([](const GPPIPCMessage&) {});
    } catch (const GException& error) {
        return error.GetDescription();
    }
    return {};
}

// Takes the names away that end so.
void RemoveShared(const char* ending)
{
    QDir folder(cShared);
    for (const QString& name : folder.entryList({QStringLiteral("*PP_*_1") + QLatin1String(ending)}))
        EXPECT_TRUE(folder.remove(name));
}

QStringList ListFiles(const QString& folder)
{
    return QDir(folder).entryList(QDir::Files);
}

void RunLoop(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}
}  // namespace

CHILD_ROLE(MoveToTheBetterPlace)
{
    if (!HideRealPlaces())
        return cNoDisk;
    const auto manager = GPPIPCManager::Get();
    const uint32_t own = GProcessInfo::GetOwnProcessID();
    const QFileInfo directory(GSessionInfo::GetObjectNamePrefix() + QLatin1String("201_PP"));
    std::vector<GBuffer> payloads;
    {
        GPPIPCReceiver receiver([&](const GPPIPCMessage& message) { payloads.push_back(message.payload); });
        // A better place that can't be looked into hides no receiver.
        const QString better = QString::fromLatin1(GetUserFolder());
        EXPECT_EQ(::mkdir(GetUserFolder().constData(), 0700), 0);
        EXPECT_TRUE(QDir(better).mkdir(directory.fileName()));
        EXPECT_EQ(manager->GetReceiverState(own), GPPIPCState::Reachable);
        EXPECT_TRUE(QDir(better).removeRecursively());
        // Others could look into a folder of these rights.
        EXPECT_EQ(::mkdir(GetUserFolder().constData(), 0750), 0);
        GMessageLoop::Start(20);
        manager->Post(own, 1, "in the shared place");
        RunLoop(1500);
        EXPECT_FALSE(ListFiles(cShared).isEmpty());
        manager->Post(own, 1, "on the way");
        EXPECT_EQ(::chmod(GetUserFolder().constData(), 0700), 0);
        manager->Post(own, 1, "before it moves");
        // What is in the way there keeps it where it is, also when it has to register again.
        EXPECT_TRUE(QDir(better).mkdir(directory.fileName()));
        const GSharedSegment queue(directory.filePath() + "_%1_1"_q.arg(own), 64, GSharedSegment::Mode::Open);
        receiver.LookAfterPlaces();
        EXPECT_TRUE(queue.IsCurrent());
        for (const char* lost : {"_S", ""}) {
            receiver.LookAfterPlaces();
            EXPECT_EQ(GetErrorCode([&] { manager->Post(own, 1, "not yet"); }), 0);
            RemoveShared(lost);
        }
        receiver.LookAfterPlaces();
        EXPECT_EQ(GetErrorCode([&] { manager->Post(own, 1, "not yet"); }), 0);
        EXPECT_TRUE(QDir(better).rmdir(directory.fileName()));
        receiver.LookAfterPlaces();
        manager->Post(own, 1, "after the move");
        RunLoop(1500);
        EXPECT_EQ(ListFiles(cShared), QStringList());
        manager->Post(own, 1, "in the own place");
        RunLoop(100);
        // A directory that nobody can open any more: it goes back where it is found.
        QFile::remove(better + "/"_q + directory.fileName());
        EXPECT_TRUE(QDir(better).mkdir(directory.fileName()));
        receiver.LookAfterPlaces();
        EXPECT_EQ(GetErrorCode([&] { manager->Post(own, 1, "back"); }), 0);
        EXPECT_TRUE(QDir(better).rmdir(directory.fileName()));
        receiver.LookAfterPlaces();
        RunLoop(100);
        GMessageLoop::Stop();
    }
    EXPECT_EQ(payloads,
              std::vector<GBuffer>({"in the shared place", "on the way", "before it moves", "not yet",
                                    "not yet", "not yet", "after the move", "in the own place", "back"}));
    EXPECT_EQ(ListFiles(QString::fromLatin1(GetUserFolder())), QStringList());
    return testing::Test::HasFailure() ? 1 : 0;
}

CHILD_ROLE(MeetAnotherUser)
{
    if (!CanBecomeSecondUser() || !HideRealPlaces())
        return cNoDisk;
    const auto manager = GPPIPCManager::Get();
    const uint32_t own = GProcessInfo::GetOwnProcessID();
    const GString name = GSessionInfo::GetObjectNamePrefix() + QLatin1String("201_PP");
    EXPECT_TRUE(OccupySharedPlace(name));
    EXPECT_TRUE(GetRefusal().contains("user number 65534"_q)) << GetRefusal().toStdString();
    EXPECT_EQ(GetErrorCode([&] { manager->GetReceiverState(own); }), GErrorCode::cSegmentHeader);
    EXPECT_EQ(::mkdir(GetUserFolder().constData(), 0700), 0);
    GResult reason = GResult::Success();
    EXPECT_EQ(manager->GetReceiverState(own, &reason), GPPIPCState::NoReceiver);
    EXPECT_TRUE(reason.GetReason().contains("user number 65534"_q)) << reason.GetReason().toStdString();
    EXPECT_EQ(reason.GetCode(), GErrorCode::cSegmentHeader);
    EXPECT_EQ(GetErrorCode([&] { manager->Post(own, 1, "x"); }), GErrorCode::cSegmentHeader);
    const GPPIPCReceiver receiver([](const GPPIPCMessage&) {});
    EXPECT_EQ(manager->GetReceiverState(own), GPPIPCState::Reachable);
    EXPECT_EQ(GetErrorCode([&] { manager->Post(own, 1, "x"); }), 0);
    return testing::Test::HasFailure() ? 1 : 0;
}

class PlacesTest : public IpcTest, public testing::WithParamInterface<const char*>
{
};

TEST_P(PlacesTest, Role)
{
    const int status = ChildProcess(QString::fromLatin1(GetParam()), {}).WaitForExit();
    if (status == cNoDisk)
        GTEST_SKIP() << "This user may not mount a disk, or not act as a second user.";
    EXPECT_EQ(status, 0);
}

INSTANTIATE_TEST_SUITE_P(Places, PlacesTest, testing::Values("MoveToTheBetterPlace", "MeetAnotherUser"));

TEST_F(IpcTest, WhereNothingCanBeLookedAtAReceiverDoesNotStart)
{
    const QString endless = mSandbox.GetPath("endless"_q);
    ASSERT_EQ(::symlink("endless", QFile::encodeName(endless).constData()), 0);
    const QString closed = mSandbox.GetPath("closed"_q);
    ASSERT_TRUE(QDir().mkpath(closed) && ::chmod(QFile::encodeName(closed).constData(), 0) == 0);
    for (const QString& root : {mSandbox.GetPath(QString(300, QLatin1Char('x'))), endless, closed}) {
        if (root == closed && ::geteuid() == 0)
            continue;
        qputenv("MORVANE_ROOT", QFile::encodeName(root));
        EXPECT_TRUE(GetRefusal().contains(root)) << GetRefusal().toStdString();
    }
}
