#include "foundation/ipc/PGuardedMapping.h"

#include <QtGlobal>

#include <memory>

// A module of its own with guarded memory in it, as a plug-in is.
namespace
{
std::unique_ptr<PGuardedMapping> sMapping;
}

extern "C" Q_DECL_EXPORT void MapGuarded(int file)
{
    sMapping = std::make_unique<PGuardedMapping>(file, 64);
}

extern "C" Q_DECL_EXPORT void UnmapGuarded()
{
    sMapping.reset();
}

// What the first byte is.
extern "C" Q_DECL_EXPORT int ReadGuarded()
{
    return *sMapping->GetData();
}
