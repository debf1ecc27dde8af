#include "foundation/ipc/PGuardedMapping.h"

#include <memory>

// A module of its own with guarded memory in it, as a plug-in is.
namespace
{
std::unique_ptr<PGuardedMapping> sMapping;
}

extern "C" __attribute__((visibility("default"))) void MapGuarded(int file)
{
    sMapping = std::make_unique<PGuardedMapping>(file, 64);
}

extern "C" __attribute__((visibility("default"))) void UnmapGuarded()
{
    sMapping.reset();
}

// What the first byte is.
extern "C" __attribute__((visibility("default"))) int ReadGuarded()
{
    return *sMapping->GetData();
}
