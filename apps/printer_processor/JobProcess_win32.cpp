#include "apps/printer_processor/JobProcess.h"

#include <windows.h>

// A job object, whose processes end with the last handle to it.
struct JobProcess::Bond
{
    Bond() : handle(CreateJobObjectW(nullptr, nullptr))
    {
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits = {};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        SetInformationJobObject(handle, JobObjectExtendedLimitInformation, &limits, sizeof limits);
    }
    ~Bond() { CloseHandle(handle); }
    Bond(const Bond&) = delete;
    Bond& operator=(const Bond&) = delete;

    HANDLE handle;
};

JobProcess::JobProcess() : mBond(std::make_unique<Bond>()) {}

JobProcess::~JobProcess() = default;

bool JobProcess::Start(const QString& program, const QStringList& arguments)
{
    start(program, arguments);
    if (!waitForStarted(-1))
        return false;
    const HANDLE process =
        OpenProcess(PROCESS_SET_QUOTA | PROCESS_TERMINATE, FALSE, static_cast<DWORD>(processId()));
    AssignProcessToJobObject(mBond->handle, process);
    CloseHandle(process);
    return true;
}

void JobProcess::setupChildProcess() {}
