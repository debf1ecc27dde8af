#include "XServer.h"

#include "tests/support/Test.h"

#include <QGuiApplication>
#include <QTest>

static void Start(GBoundProcess& process, const char* program, const QStringList& arguments)
{
    process.setProcessChannelMode(QProcess::SeparateChannels);
    process.setStandardErrorFile(QProcess::nullDevice());
    ASSERT_TRUE(process.Start(QLatin1String(program), arguments))
        << program << " is not installed: see tools/packages.txt";
}

static void Stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished();
}

XServer::XServer()
{
    Start(mServer, "Xvfb",
          {"-displayfd"_q, "1"_q, "-screen"_q, "0"_q, "1000x700x24"_q, "-nolisten"_q, "tcp"_q});
    EXPECT_TRUE(mServer.waitForReadyRead(30000));
    qputenv("DISPLAY", ':' + mServer.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("XDG_CACHE_HOME", mFolder.path().toUtf8());
    StartManager(false);
    Start(mBus, "dbus-daemon", {"--session"_q, "--nofork"_q, "--print-address"_q});
    EXPECT_TRUE(mBus.waitForReadyRead(30000));
    qputenv("DBUS_SESSION_BUS_ADDRESS", mBus.readLine().trimmed());
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");
}

XServer::~XServer()
{
    Stop(mBus);
    Stop(mManager);
    Stop(mServer);
}

void XServer::StartManager(bool keepsAltClick)
{
    StopManager();
    const QByteArray click =
        R"(<mousebind button="A-Left" action="Press"><action name="Raise"/></mousebind>)";
    const QByteArray config =
        R"(<?xml version="1.0"?><openbox_config xmlns="http://openbox.org/3.4/rc"><focus><focusNew>yes</focusNew></focus>)"
        R"(<keyboard><keybind key="A-Tab"><action name="NextWindow"><finalactions><action name="Focus"/>)"
        R"(<action name="Raise"/></finalactions></action></keybind></keyboard>)"
        "<mouse><context name=\"Frame\">" +
        (keepsAltClick ? click : QByteArray()) + "</context></mouse></openbox_config>";
    const QString file = mFolder.filePath("rc.xml"_q);
    ASSERT_TRUE(WriteFile(file, config));
    Start(mManager, "openbox", {"--sm-disable"_q, "--config-file"_q, file, "--startup"_q, "echo ready"_q});
    EXPECT_TRUE(mManager.waitForReadyRead(30000));
}

void XServer::StopManager()
{
    if (mManager.state() != QProcess::NotRunning)
        Stop(mManager);
}

void XServer::Do(const char* words)
{
    GBoundProcess tool(GBoundProcess::Ending::cByRequest);
    Start(tool, "xdotool", QString::fromLatin1(words).split(QLatin1Char(' ')));
    EXPECT_TRUE(QTest::qWaitFor([&] { return tool.state() == QProcess::NotRunning; }, 30000)) << words;
    EXPECT_EQ(tool.exitCode(), 0) << words;
    QGuiApplication::sync();
    QCoreApplication::processEvents();
}
