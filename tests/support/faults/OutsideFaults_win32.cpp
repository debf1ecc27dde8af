#include "tests/support/faults/OutsideFaults.h"

#include "foundation/system/GSystemError.h"
#include "tests/support/TestFiles.h"
#include "tests/support/faults/DeniedFolder.h"
#include "tests/support/faults/FullVolume.h"
#include "tests/support/faults/ScenarioRun.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <memory>
#include <thread>
#include <vector>

namespace
{
constexpr int cSmallestPart = 4096;  // of a volume, which files take as a whole

// Undoes a fault when it goes.
using Fault = std::shared_ptr<void>;

Fault MakeFault(const std::function<void()>& undo)
{
    return Fault(nullptr, [undo](void*) { undo(); });
}

const wchar_t* GetText(const QString& path)
{
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

HANDLE Hold(const QString& file, DWORD shared)
{
    const HANDLE handle = CreateFileW(GetText(file), GENERIC_READ, shared, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(handle, INVALID_HANDLE_VALUE) << qPrintable(file);
    return handle;
}

Fault HoldAll(const QString& file)
{
    const HANDLE handle = Hold(file, 0);
    return MakeFault([handle] { CloseHandle(handle); });
}

// As a program does that looks through new files. The time is long enough for the task to come to the file.
Fault HoldForAMoment(const QString& file)
{
    const HANDLE handle = Hold(file, FILE_SHARE_READ);
    auto timer = std::make_shared<std::thread>([handle] {
        Sleep(1200);
        CloseHandle(handle);
    });
    return MakeFault([timer] { timer->join(); });
}

Fault MakeReadOnly(const QString& file)
{
    EXPECT_TRUE(SetFileAttributesW(GetText(file), FILE_ATTRIBUTE_READONLY));
    return MakeFault([file] { SetFileAttributesW(GetText(file), FILE_ATTRIBUTE_NORMAL); });
}

// Something else bears the name meanwhile.
Fault PutAway(const QString& path, const std::function<bool()>& put, const std::function<bool()>& remove)
{
    const QString away = path + QStringLiteral("-away");
    const bool isThere = QFileInfo::exists(path);
    EXPECT_TRUE(!isThere || QDir().rename(path, away));
    EXPECT_TRUE(put());
    return MakeFault([=] {
        EXPECT_TRUE(remove());
        EXPECT_TRUE(!isThere || QDir().rename(away, path));
    });
}

Fault PutFolder(const QString& file)
{
    return PutAway(
        file, [file] { return QDir().mkpath(file); }, [file] { return QDir().rmdir(file); });
}

Fault PutFileForFolder(const QString& file)
{
    const QString folder = QFileInfo(file).path();
    return PutAway(
        folder, [folder] { return WriteFile(folder, "no folder"); },
        [folder] { return QFile::remove(folder); });
}

struct OutsideFault
{
    const char* name;
    std::function<Fault(const QString& file)> make;
    enum Kind
    {
        cOfAFile,  // which is there
        cForAMoment,
        cInItsPlace  // only where the task would write
    } kind;
    QStringList reasons;
};

// The system's text, which Qt has of its own for some errors.
QString GetText(DWORD error)
{
    return GetReasonText({static_cast<int>(error), boost::system::system_category()});
}

std::vector<OutsideFault> GetFaults()
{
    const QString denied = GetText(ERROR_ACCESS_DENIED);
    const QString taken = GetText(ERROR_ALREADY_EXISTS);
    return {{"held open", HoldAll, OutsideFault::cOfAFile, {GetText(ERROR_SHARING_VIOLATION), denied}},
            {"held open for a moment", HoldForAMoment, OutsideFault::cForAMoment, {}},
            {"read-only",
             MakeReadOnly,
             OutsideFault::cOfAFile,
             {denied, QStringLiteral("a file that is read-only")}},
            {"a folder",
             PutFolder,
             OutsideFault::cInItsPlace,
             {denied, taken, QStringLiteral("it is a folder"), QStringLiteral("already exists"),
              QStringLiteral("something that is no file")}},
            {"a file in the place of its folder",
             PutFileForFolder,
             OutsideFault::cInItsPlace,
             {GetText(ERROR_PATH_NOT_FOUND), GetText(ERROR_DIRECTORY), GetText(ERROR_INVALID_NAME), taken,
              QStringLiteral("doesn't exist"), QStringLiteral("is missing")}}};
}

bool TellsReason(const FaultScenario& scenario, const QByteArray& error, const QStringList& names,
                 const QStringList& reasons)
{
    const QString text = QString::fromLocal8Bit(error);
    const auto isTold = [&](const QString& part) { return text.contains(part); };
    return scenario.tellsReason ? std::any_of(names.cbegin(), names.cend(), isTold) &&
                                      std::any_of(reasons.cbegin(), reasons.cend(), isTold)
                                : !text.isEmpty();
}

QString JudgeError(const ScenarioRun& run, const ScenarioRun::Outcome& outcome, const QStringList& names,
                   const OutsideFault& fault)
{
    if (outcome.status == 0)
        return QString();
    if (fault.kind == OutsideFault::cForAMoment)
        return QStringLiteral("it failed: ") + QString::fromLocal8Bit(outcome.error);
    return TellsReason(run.GetScenario(), outcome.error, names, fault.reasons)
               ? QString()
               : QStringLiteral("the reason is not told: ") + QString::fromLocal8Bit(outcome.error);
}

QString RunWithFault(ScenarioRun& run, const QString& file, const OutsideFault& fault, int* status = nullptr)
{
    run.PutBack();
    const QStringList names = {QFileInfo(file).fileName(), QFileInfo(file).dir().dirName()};
    Fault made = fault.make(file);
    const ScenarioRun::Outcome outcome = run.Run(QProcessEnvironment::systemEnvironment());
    made.reset();
    if (status != nullptr)
        *status = outcome.status;
    QString wrong = run.JudgeState(outcome);
    if (wrong.isEmpty())
        wrong = JudgeError(run, outcome, names, fault);
    if (wrong.isEmpty())
        wrong = run.JudgeNames();
    return wrong.isEmpty() ? run.RunAgain() : wrong;
}

std::vector<OutsideFault> GetDenials()
{
    const auto denyAll = [](const QString& file) -> Fault {
        return std::make_shared<DeniedFolder>(QFileInfo(file).path(), DeniedFolder::cAll);
    };
    const auto denyWriting = [](const QString& file) -> Fault {
        return std::make_shared<DeniedFolder>(QFileInfo(file).path(), DeniedFolder::cWriting);
    };
    // Wine tells only of a folder that it can't be emptied.
    const QStringList denied = {GetText(ERROR_ACCESS_DENIED), QStringLiteral("access is denied"),
                                GetText(ERROR_DIR_NOT_EMPTY)};
    return {{"denied", denyAll, OutsideFault::cOfAFile, denied},
            {"denied for writing", denyWriting, OutsideFault::cInItsPlace, denied}};
}

// The whole root is on a drive that is not there.
QString RunOnMissingDrive(ScenarioRun& run)
{
    const QString root = QStringLiteral("Q:/none");
    run.PutBack();
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("MORVANE_ROOT"), QDir::toNativeSeparators(root));
    const ScenarioRun::Outcome outcome = run.Run(environment, root);
    if (outcome.status == 0)
        return QStringLiteral("it said that it was done");
    const OutsideFault fault = {
        "",
        nullptr,
        OutsideFault::cInItsPlace,
        {GetText(ERROR_PATH_NOT_FOUND), GetText(ERROR_FILE_NOT_FOUND), QStringLiteral("does not exist"),
         QStringLiteral("doesn't exist"), QStringLiteral("Can't find"), QStringLiteral("is missing")}};
    return JudgeError(run, outcome, {QStringLiteral("Q:")}, fault);
}

QString GetFile(const ScenarioRun& run, const OutsideTarget& target)
{
    return run.GetRoot() + QLatin1Char('/') + QString::fromLatin1(target.file);
}

void RunWhole(ScenarioRun& run)
{
    const ScenarioRun::Outcome whole = run.Run(QProcessEnvironment::systemEnvironment());
    ASSERT_EQ(whole.status, 0) << whole.error.toStdString();
    run.NoteNew();
}
}  // namespace

void RunOutsideFaults(const OutsideTarget& target)
{
    const FaultScenario scenario = target.scenario();
    ScenarioRun run(scenario);
    const QString file = GetFile(run, target);
    const bool isThere = QFileInfo::exists(file);
    RunWhole(run);
    for (const OutsideFault& fault : GetFaults()) {
        const bool isMade = fault.kind == OutsideFault::cInItsPlace
                                ? target.use == OutsideTarget::cWritten
                                : isThere && !(fault.kind == OutsideFault::cForAMoment &&
                                               target.use == OutsideTarget::cRemoved);
        const QString wrong = isMade ? RunWithFault(run, file, fault) : QString();
        EXPECT_TRUE(wrong.isEmpty()) << fault.name << ": " << target.file << ": " << wrong.toStdString();
    }
    const QString wrong = RunOnMissingDrive(run);
    EXPECT_TRUE(wrong.isEmpty()) << "a missing drive: " << wrong.toStdString();
}

void RunInDeniedFolders(const OutsideTarget& target)
{
    const FaultScenario scenario = target.scenario();
    ScenarioRun run(scenario);
    RunWhole(run);
    for (const OutsideFault& fault : GetDenials()) {
        if (fault.kind == OutsideFault::cInItsPlace && target.use == OutsideTarget::cRead)
            continue;
        const QString wrong = RunWithFault(run, GetFile(run, target), fault);
        EXPECT_TRUE(wrong.isEmpty()) << fault.name << ": " << target.file << ": " << wrong.toStdString();
    }
}

void RunOnFullVolumes(const OutsideTarget& target)
{
    const FaultScenario scenario = target.scenario();
    ScenarioRun run(scenario);
    RunWhole(run);
    const OutsideFault::Kind kind = OutsideFault::cInItsPlace;
    const QStringList reasons = {GetText(ERROR_DISK_FULL), QStringLiteral("the disk has no room")};
    int status = 1;
    for (int left = 0; status != 0; left = left == 0 ? cSmallestPart : 2 * left) {
        const auto fill = [left](const QString&) -> Fault { return std::make_shared<FullVolume>(left); };
        const QString wrong = RunWithFault(run, GetFile(run, target), {"", fill, kind, reasons}, &status);
        EXPECT_TRUE(wrong.isEmpty()) << left << " bytes left: " << target.file << ": " << wrong.toStdString();
        EXPECT_TRUE(status != 0 || left > 0) << "The full volume was not noticed.";
    }
}
