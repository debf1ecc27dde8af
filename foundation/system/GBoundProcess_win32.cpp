#include "foundation/system/GBoundProcess.h"

#include <windows.h>

#include <vector>

// A job object, whose processes end with the last handle to it; and what makes a new process one of them from
// the first instruction on, where the system knows that.
struct GBoundProcess::Bond
{
    Bond() : job(CreateJobObjectW(nullptr, nullptr))
    {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        buffer.resize(size);
        const auto list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(buffer.data());
        if (!InitializeProcThreadAttributeList(list, 1, 0, &size))
            return;
        startup.lpAttributeList = list;
        knowsJobs = UpdateProcThreadAttribute(list, 0, cJobList, const_cast<HANDLE*>(&job), sizeof job,
                                              nullptr, nullptr) != 0;
    }
    ~Bond()
    {
        if (startup.lpAttributeList != nullptr)
            DeleteProcThreadAttributeList(startup.lpAttributeList);
        CloseHandle(job);
    }
    Bond(const Bond&) = delete;
    Bond& operator=(const Bond&) = delete;

    // The headers name it from Windows 10 on only.
    static constexpr DWORD_PTR cJobList = ProcThreadAttributeValue(13, FALSE, TRUE, FALSE);

    const HANDLE job;
    std::vector<char> buffer;
    STARTUPINFOEXW startup = {};
    bool knowsJobs = false;
};

GBoundProcess::GBoundProcess(Ending) : mBond(std::make_unique<Bond>())
{
    if (!mBond->knowsJobs)
        return;
    setCreateProcessArgumentsModifier([this](CreateProcessArguments* arguments) {
        mBond->startup.StartupInfo = *arguments->startupInfo;
        mBond->startup.StartupInfo.cb = sizeof mBond->startup;
        arguments->startupInfo = &mBond->startup.StartupInfo;
    });
}

GBoundProcess::~GBoundProcess() = default;

bool GBoundProcess::Start(const QString& program, const QStringList& arguments, OpenMode mode)
{
    start(program, arguments, mode);
    if (!waitForStarted(-1))
        return false;
    if (!mBond->knowsJobs) {
        const HANDLE process =
            OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, static_cast<DWORD>(processId()));
        AssignProcessToJobObject(mBond->job, process);
        CloseHandle(process);
    }
    return true;
}

void GBoundProcess::setupChildProcess() {}
