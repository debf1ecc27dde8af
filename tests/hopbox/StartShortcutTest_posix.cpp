#include "hopbox/StartShortcut.h"

#include "tests/support/Sandbox.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QThread>

#include <gtest/gtest.h>

static constexpr int cPatience = 20000;  // milliseconds

// An application that leaves the folder in which it was started, and its own path, in a file beside it.
static void MakeApplication(const QString& folder, const QString& name)
{
    ASSERT_TRUE(QDir().mkpath(folder));
    QFile program(QDir(folder).absoluteFilePath(name + QStringLiteral(".exe")));
    ASSERT_TRUE(program.open(QIODevice::WriteOnly));
    program.write("#!/bin/sh\n{ pwd; printf '%s\\n' \"$0\"; } > started.part\nmv started.part started\n");
    ASSERT_TRUE(program.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

static QByteArray WaitForFile(const QString& path)
{
    QElapsedTimer timer;
    for (timer.start(); !QFile::exists(path) && timer.elapsed() < cPatience;)
        QThread::msleep(5);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(StartShortcut, ADesktopStartsTheApplicationInItsFolder)
{
    const Sandbox sandbox;
    for (const char* name : {"plain", "a \"b\" $HOME `id` \\d\\n %f %% 'e'; #x", "a=b", " \u65E5\u672C\t"}) {
        SCOPED_TRACE(name);
        const QString folder = sandbox.GetPath(QString::fromUtf8(name));
        const QString application = QStringLiteral("Press \"1\" & %u");
        MakeApplication(folder, application);
        const QString shortcut = sandbox.GetPath(QStringLiteral("a.desktop"));
        ASSERT_TRUE(MakeStartShortcut(application, GPathName(folder), GPathName(shortcut)));
        EXPECT_TRUE(QFile(shortcut).permissions() & QFile::ExeOwner);
        const int status = QProcess::execute(QStringLiteral("gio"), {QStringLiteral("launch"), shortcut});
        ASSERT_EQ(status, 0);
        const QString program = folder + QLatin1Char('/') + application + QLatin1String(".exe");
        EXPECT_EQ(WaitForFile(folder + QLatin1String("/started")).toStdString(),
                  (folder + QLatin1Char('\n') + program + QLatin1Char('\n')).toStdString());
    }
}

TEST(StartShortcut, WhatCanNotBeWrittenIsRefused)
{
    const Sandbox sandbox;
    const GPathName folder(sandbox.GetPath());
    const GPathName shortcut(sandbox.GetPath(QStringLiteral("a.desktop")));
    EXPECT_FALSE(MakeStartShortcut(QStringLiteral("../a"), folder, shortcut));
    EXPECT_FALSE(MakeStartShortcut(QString(), folder, shortcut));
    EXPECT_FALSE(MakeStartShortcut(QStringLiteral("a"), GPathName(QStringLiteral("b")), shortcut));
    EXPECT_FALSE(
        MakeStartShortcut(QStringLiteral("a"), folder, folder.GetChild(QStringLiteral("none/a.desktop"))));
    EXPECT_TRUE(QDir(sandbox.GetPath()).isEmpty());
}
