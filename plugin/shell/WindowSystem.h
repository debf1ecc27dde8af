#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

// Asked before this process starts Qt's windows: where that fails, Qt ends the process, and with it the host.
namespace WindowSystem
{
// Why no window can be shown, as the end of a sentence; empty when one can. Goes by what Qt will try: the
// platforms that the environment names, else those of the system; one that works is enough. The folders of
// Qt's plug-ins are to be known by then (QCoreApplication::addLibraryPath).
GString FindFault();

// The platforms that Qt tries here when the environment names none, the system's first choice first.
QStringList GetDefaultPlatforms();

// Why a platform of Qt's has nothing to show windows on; empty where it has, or needs nothing.
GString FindDisplayFault(const GString& platform);
}  // namespace WindowSystem
