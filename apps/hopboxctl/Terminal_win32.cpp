#include "apps/hopboxctl/Terminal.h"

#include <windows.h>

bool IsErrorTerminal()
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}
