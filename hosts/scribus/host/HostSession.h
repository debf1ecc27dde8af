#pragma once

#include "plugin/host/IHostServices.h"

class ScribusHost;

// The session, the application and what belongs to no document, as a plug-in sees them.
namespace HostSession
{
HostPtr<ISession> MakeSession(ScribusHost& host);
HostPtr<IUnitOfMeasureSettings> MakeUnits(ClassID unit);
HostPtr<IModalUtils> MakeModalUtils(ScribusHost& host);
}  // namespace HostSession
