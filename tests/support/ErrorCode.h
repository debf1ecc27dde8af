#pragma once

#include "foundation/core/GException.h"

#include <cstdint>

// The code of the GException that the step throws; 0 when it throws none.
template <typename Step>
int32_t GetErrorCode(const Step& step)
{
    try {
        step();
    } catch (const GException& error) {
        return error.GetCode();
    }
    return 0;
}
