#pragma once

#include "plugin/host/IPlugIn.h"

// Puts the plug-in's entries into the host's menus when the session begins.
class GIDCSPStartupShutdown final : public IStartupShutdownService
{
public:
    // Adds each action that the host doesn't know yet, with its menu entry; a host may have kept them from an
    // earlier session. Without an action or a menu manager nothing is added.
    void Startup() override;

    // Whether Startup is asking the host now, whose services must stay until it has its answers.
    bool IsBusy() const { return mIsStarting; }

    // The host's menus go with its session: nothing to do.
    void Shutdown() override;

private:
    bool mIsStarting = false;
};
