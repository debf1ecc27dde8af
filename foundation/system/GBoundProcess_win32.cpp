#include "foundation/system/GBoundProcess.h"

#include <windows.h>

// A job object, whose processes end with the last handle to it.
struct GBoundProcess::Bond
{
    Bond() : job(CreateJobObjectW(nullptr, nullptr))
    {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    }
    ~Bond() { CloseHandle(job); }
    Bond(const Bond&) = delete;
    Bond& operator=(const Bond&) = delete;

    const HANDLE job;
};

GBoundProcess::GBoundProcess(Ending) : mBond(std::make_unique<Bond>()) {}

GBoundProcess::~GBoundProcess() = default;

bool GBoundProcess::Start(const QString& program, const QStringList& arguments, OpenMode mode)
{
    start(program, arguments, mode);
    if (!waitForStarted(-1))
        return false;
    const HANDLE process =
        OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, static_cast<DWORD>(processId()));
    AssignProcessToJobObject(mBond->job, process);
    CloseHandle(process);
    return true;
}

void GBoundProcess::setupChildProcess() {}
