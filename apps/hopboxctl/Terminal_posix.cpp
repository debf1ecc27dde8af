#include "apps/hopboxctl/Terminal.h"

#include <unistd.h>

bool IsErrorTerminal()
{
    return isatty(STDERR_FILENO) == 1;
}
