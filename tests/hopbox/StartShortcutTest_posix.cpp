#include "hopbox/StartShortcut.h"

#include "tests/support/Test.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QThread>

static constexpr int cPatience = 20000;  // milliseconds

// An application that leaves the folder in which it was started, and its own path, in a file beside it.
static void MakeApplication(const QString& path)
{
    ASSERT_TRUE(WriteProgram(
        path, "#!/bin/sh\n{ pwd; printf '%s\\n' \"$0\"; } > started.part\nmv started.part started\n"));
}

static QByteArray WaitForFile(const QString& path)
{
    QElapsedTimer timer;
    for (timer.start(); !QFile::exists(path) && timer.elapsed() < cPatience;)
        QThread::msleep(5);
    return ReadFile(path);
}

TEST(StartShortcut, ADesktopStartsTheApplicationInItsFolder)
{
    const Sandbox sandbox;
    for (const char* name : {"plain", "a \"b\" $HOME `id` \\d\\n %f %% 'e'; #x", "a=b", " \u65E5\u672C\t"}) {
        SCOPED_TRACE(name);
        const QString folder = sandbox.GetPath(QString::fromUtf8(name));
        const QString application = "Press \"1\" & %u"_q;
        const QString program = folder + QLatin1Char('/') + application + QLatin1String(".exe");
        MakeApplication(program);
        const QString shortcut = sandbox.GetPath("a.desktop"_q);
        ASSERT_TRUE(MakeStartShortcut(application, GPathName(folder), GPathName(shortcut)));
        EXPECT_TRUE(QFile(shortcut).permissions() & QFile::ExeOwner);
        ASSERT_EQ(QProcess::execute("gio"_q, {"launch"_q, shortcut}), 0);
        EXPECT_EQ(WaitForFile(folder + QLatin1String("/started")).toStdString(),
                  (folder + QLatin1Char('\n') + program + QLatin1Char('\n')).toStdString());
    }
}

TEST(StartShortcut, WhatCanNotBeWrittenIsRefused)
{
    const Sandbox sandbox;
    const GPathName folder(sandbox.GetPath());
    const GPathName shortcut(sandbox.GetPath("a.desktop"_q));
    EXPECT_FALSE(MakeStartShortcut("../a"_q, folder, shortcut));
    EXPECT_FALSE(MakeStartShortcut(QString(), folder, shortcut));
    EXPECT_FALSE(MakeStartShortcut("a"_q, GPathName("b"_q), shortcut));
    EXPECT_FALSE(MakeStartShortcut("a"_q, folder, folder.GetChild("none/a.desktop"_q)));
    EXPECT_TRUE(QDir(sandbox.GetPath()).isEmpty());
}
