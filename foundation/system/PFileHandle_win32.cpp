#include "foundation/system/PFileHandle.h"

#include <windows.h>

bool PFileHandle::Close() noexcept
{
    return !IsOpen() || CloseHandle(reinterpret_cast<HANDLE>(Release())) != 0;
}
