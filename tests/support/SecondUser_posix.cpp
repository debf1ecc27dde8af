#include "tests/support/SecondUser.h"

#include <grp.h>
#include <sys/prctl.h>
#include <unistd.h>

static constexpr unsigned cNobody = 65534;

bool BecomeSecondUser()
{
    if (!CanBecomeSecondUser() || setgroups(0, nullptr) != 0 || setgid(cNobody) != 0 || setuid(cNobody) != 0)
        return false;
    // A process that changed its user may not look into itself, which the leak check at the end has to.
    return prctl(PR_SET_DUMPABLE, 1) == 0;
}

bool CanBecomeSecondUser()
{
    return geteuid() == 0;
}
