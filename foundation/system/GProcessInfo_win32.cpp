#include "foundation/system/GProcessInfo.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/PFileHandle.h"

#include <windows.h>

#include <tlhelp32.h>

#include <algorithm>

namespace
{
PFileHandle OpenOther(uint32_t processID, DWORD access)
{
    const HANDLE process = OpenProcess(access, FALSE, processID);
    return process != nullptr ? PFileHandle(reinterpret_cast<intptr_t>(process)) : PFileHandle();
}

HANDLE GetHandle(const PFileHandle& handle)
{
    return reinterpret_cast<HANDLE>(handle.Get());
}
}  // namespace

std::vector<uint32_t> GProcessInfo::GetProcessIDs(const GString& imageName)
{
    std::vector<uint32_t> processIDs;
    const PFileHandle snapshot(reinterpret_cast<intptr_t>(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)));
    PROCESSENTRY32W entry = {};
    entry.dwSize = sizeof entry;
    bool isThere = snapshot.IsOpen() && Process32FirstW(GetHandle(snapshot), &entry);
    while (isThere) {
        if (imageName.compare(QString::fromWCharArray(entry.szExeFile), Qt::CaseInsensitive) == 0)
            processIDs.push_back(entry.th32ProcessID);
        isThere = Process32NextW(GetHandle(snapshot), &entry);
    }
    if (GetLastError() != ERROR_NO_MORE_FILES)
        throw GCustomException(GErrorCode::cFile, QStringLiteral("The list of processes can't be read: ") +
                                                      GetReasonText(GetLastSystemError()));
    std::sort(processIDs.begin(), processIDs.end());
    return processIDs;
}

uint32_t GProcessInfo::GetOwnProcessID()
{
    return GetCurrentProcessId();
}

bool GProcessInfo::IsAlive(uint32_t processID)
{
    const PFileHandle process = OpenOther(processID, SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION);
    if (!process.IsOpen())
        return GetLastError() == ERROR_ACCESS_DENIED;
    return WaitForSingleObject(GetHandle(process), 0) == WAIT_TIMEOUT;
}

uint64_t GProcessInfo::GetStartTime(uint32_t processID)
{
    const PFileHandle process = OpenOther(processID, PROCESS_QUERY_LIMITED_INFORMATION);
    FILETIME created = {}, ended = {}, kernel = {}, user = {};
    if (!process.IsOpen() || !IsAlive(processID) ||
        !GetProcessTimes(GetHandle(process), &created, &ended, &kernel, &user))
        return 0;
    return static_cast<uint64_t>(created.dwHighDateTime) << 32 | created.dwLowDateTime;
}

uint64_t GProcessInfo::GetMachineStart()
{
    return 0;
}
