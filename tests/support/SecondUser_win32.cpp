#include "tests/support/SecondUser.h"

bool BecomeSecondUser()
{
    return false;
}

bool CanBecomeSecondUser()
{
    return false;
}
