#pragma once

#include "plugin/host/IPlugIn.h"

// Puts the plug-in's entries into the host's menus when the session begins.
class GIDCSPStartupShutdown final : public IStartupShutdownService
{
public:
    // Adds each action that the host doesn't know yet, with its menu entry; a host may have kept them from an
    // earlier session. Without an action or a menu manager nothing is added.
    void Startup() override;

    // The host's menus go with its session: nothing to do.
    void Shutdown() override;
};
