#pragma once

#include "plugin/host/IPackage.h"

class ScribusHost;

// Packages as a plug-in sees them.
namespace HostPackages
{
HostPtr<IObjectModel> MakeObjectModel(ScribusHost& host);
}  // namespace HostPackages
