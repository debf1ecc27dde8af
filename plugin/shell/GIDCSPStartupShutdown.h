#pragma once

#include "plugin/host/IPlugIn.h"

// Puts the plug-in's entries into the host's menus when the session begins.
class GIDCSPStartupShutdown final : public IStartupShutdownService
{
public:
    // Adds each action that the host doesn't know yet, with its menu entry; a host may have kept some from an
    // earlier session. If the host has no action manager or no menu manager, nothing is added.
    void Startup() override;

    // Whether Startup is asking the host now. The host's services must stay until Startup has its answers.
    bool IsBusy() const { return mIsStarting; }

    // Does nothing: the host's menus end with its session.
    void Shutdown() override;

private:
    bool mIsStarting = false;
};
