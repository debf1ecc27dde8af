#pragma once

#include <QProcess>
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
    // Ends with this program, however that ends.
    class Companion : public QProcess
    {
    protected:
        void setupChildProcess() override;
    };

    QTemporaryDir mFolder;
    Companion mServer;
    Companion mManager;
    Companion mBus;
};
