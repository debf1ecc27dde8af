#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

// Checks to make before this process starts Qt's windows: if that start fails, Qt ends the process, and with
// it the host.
namespace WindowSystem
{
// Why no window can be shown, as the end of a sentence; empty when one can. Checks what Qt will try: the
// platforms that the environment names, or else those of the system. One that works is enough. The folders of
// Qt's plug-ins must be known before the call (QCoreApplication::addLibraryPath).
GString FindFault();

// The platforms that Qt tries here when the environment names none, the system's first choice first.
QStringList GetDefaultPlatforms();

// Why a Qt platform has nothing to show windows on; empty if it has something, or needs nothing.
GString FindDisplayFault(const GString& platform);
}  // namespace WindowSystem
