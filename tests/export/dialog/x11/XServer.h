#pragma once

#include "foundation/system/GBoundProcess.h"

#include <QTemporaryDir>

// An X server without a screen, with a window manager and a bus for screen readers, for the life of the
// object; the environment names them to Qt and to other programs. To be made before the QApplication.
class XServer
{
public:
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    // Whether the window manager keeps Alt with a click for itself. Restarts it.
    void StartManager(bool keepsAltClick);
    void StopManager();

    // Sends keys and mouse events as a keyboard and a mouse would, in the words of xdotool, and waits until
    // they have reached the program.
    static void Do(const char* words);

private:
    QTemporaryDir mFolder;
    GBoundProcess mServer{GBoundProcess::Ending::cByRequest};
    GBoundProcess mManager{GBoundProcess::Ending::cByRequest};
    GBoundProcess mBus{GBoundProcess::Ending::cByRequest};
};
