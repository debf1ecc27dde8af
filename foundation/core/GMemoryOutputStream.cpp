#include "foundation/core/GMemoryOutputStream.h"

void GMemoryOutputStream::Write(const char* bytes, int count)
{
    mData.append(bytes, count);
}
