#include "foundation/strings/GStringPool.h"
#include "plugin/messages/MessageCodes.h"
#include "plugin/messages/MessageTable.h"
#include "tests/support/Test.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>

namespace
{
const QString cDocuments = QString::fromUtf8(DOCUMENTS);

QString ReadPage(const QString& page)
{
    return QString::fromUtf8(ReadFile(cDocuments + QLatin1Char('/') + page));
}

// A command of a page, and the output that the page shows below it.
struct Step
{
    QString command;
    QString output;
};

QVector<Step> ReadSteps(const QString& page)
{
    QVector<Step> steps;
    bool isOutput = false;
    for (const QString& line : page.split(QLatin1Char('\n'))) {
        if (line.startsWith("    $ "_q)) {
            steps.append({line.mid(6), QString()});
            isOutput = true;
        } else if (isOutput && line.startsWith("    "_q)) {
            steps.last().output += line.mid(4) + QLatin1Char('\n');
        } else {
            isOutput = false;
        }
    }
    return steps;
}

// What is another one each time; other users of this machine may have receivers of their own.
QString Normalize(QString text)
{
    const struct
    {
        const char *pattern, *word;
    } cases[] = {
        {"[0-9A-F]{32}", "KEY"},
        {"(process|Process) \\d+", "process N"},
        {"\"sender\":\\d+", "\"sender\":N"},
        {"\"UserName\":\"[^\"]*\"", "\"UserName\":\"USER\""},
        {"/Temp/[^/]*/", "/Temp/USER/"},
        {"/[^ \n]*/systemd/user/", "UNITS/"},
        {"(hopboxctl|layout-host) \\d+(\\.\\d+)+", "PROGRAM N"},
        {"hopboxctl: (warning: )?(process N|No process \"PrinterProcessorWin.exe\" is running)[^\n]*\n", ""},
        {"morvane: HopboxHandOff::Deliver: process N [^\n]*\n", ""},
    };
    for (const auto& test : cases)
        text.replace(QRegularExpression(QLatin1String(test.pattern)), QLatin1String(test.word));
    return text;
}

// A shell of a user who follows a page: the page's own folder is one of the sandbox.
class Walk
{
public:
    explicit Walk(const Sandbox& sandbox, const QString& folder)
        : mFolder(sandbox.GetPath("walk"_q)), mShown(folder)
    {
        EXPECT_TRUE(QDir().mkpath(mFolder));
        // In place of the service manager, which a test has no right to.
        EXPECT_TRUE(WriteFile(mFolder + "/bin/systemctl"_q, "#!/bin/sh\n"));
        QFile::setPermissions(mFolder + "/bin/systemctl"_q, QFile::ReadOwner | QFile::ExeOwner);
    }

    // Types every step; gives the output of each and, where it failed, a line "status N".
    QStringList Type(const QVector<Step>& steps)
    {
        QString script = "set -m\n"_q;
        for (const Step& step : steps)
            script += "{ "_q + Localize(step.command) +
                      "\n} 2>&1; s=$?; [ $s = 0 ] || echo \"status $s\"; printf '\\f'\n"_q;
        QProcess shell;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        const QString programs = QFileInfo(GetProgramPath("hopboxctl")).path();
        environment.insert("PATH"_q,
                           mFolder + "/bin:"_q + programs + QLatin1Char(':') + environment.value("PATH"_q));
        environment.insert("XDG_CONFIG_HOME"_q, mFolder + "/config"_q);
        environment.insert("MORVANE_ROOT"_q, mFolder + "/root"_q);
        // Qt's offscreen platform never frees its screen; a leak would be layout-host's exit status.
        const QString leaks = mFolder + "/leaks"_q;
        EXPECT_TRUE(WriteFile(leaks, "leak:libqoffscreen.so\n"));
        environment.insert("LSAN_OPTIONS"_q, "print_suppressions=0:suppressions="_q + leaks);
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(mFolder);
        shell.start("bash"_q, {"-c"_q, script});
        EXPECT_TRUE(shell.waitForFinished(120000));
        return QString::fromUtf8(shell.readAllStandardOutput()).split(QLatin1Char('\f'));
    }

    QString Localize(QString text) const { return text.replace(mShown, mFolder); }

private:
    QString mFolder;
    QString mShown;
};
}  // namespace

TEST(DocumentsTest, WhatAPageSaysToTypeGivesWhatItShows)
{
    const struct
    {
        const char *page, *folder;
        int leastSteps;
    } pages[] = {{"docs/guide.md", "/tmp/hbguide", 15}, {"docs/hopboxctl.md", "/tmp/hbdemo", 25}};
    for (const auto& page : pages) {
        SCOPED_TRACE(page.page);
        const Sandbox sandbox;
        Walk walk(sandbox, QLatin1String(page.folder));
        const QVector<Step> steps = ReadSteps(ReadPage(QLatin1String(page.page)));
        ASSERT_GE(steps.size(), page.leastSteps);
        const QStringList outputs = walk.Type(steps);
        ASSERT_EQ(outputs.size(), steps.size() + 1);
        for (int at = 0; at < steps.size(); ++at) {
            const QString output = Normalize(outputs.at(at)).remove(QRegularExpression("status \\d+\n$"_q));
            const bool mayFail = steps.at(at).output.startsWith("hopboxctl: "_q);
            EXPECT_TRUE(mayFail || !outputs.at(at).contains(QRegularExpression("status \\d+\n$"_q)))
                << steps.at(at).command.toStdString() << ": " << outputs.at(at).toStdString();
            if (!steps.at(at).output.isEmpty()) {
                EXPECT_EQ(output.toStdString(), Normalize(walk.Localize(steps.at(at).output)).toStdString())
                    << steps.at(at).command.toStdString();
            }
        }
    }
}

TEST(DocumentsTest, EverySettingAndEveryAlertHasItsLine)
{
    QProcess create;
    create.start(GetProgramPath("hopboxctl"),
                 {"create"_q, "x"_q, "--job-options"_q, "x"_q, "--setting"_q, "NoSuch=1"_q});
    ASSERT_TRUE(create.waitForFinished());
    const QString error = QString::fromUtf8(create.readAllStandardError());
    const QStringList settings =
        error.section("The settings are "_q, 1).section(QLatin1Char('.'), 0, 0).split(", "_q);
    ASSERT_GT(settings.size(), 10);
    const QString settingsPage = ReadPage("docs/settings.md"_q);
    for (const QString& setting : settings)
        EXPECT_TRUE(settingsPage.contains("\n| `"_q + setting + "` | "_q)) << setting.toStdString();

    GStringPool::Initialize();
    RegisterPlugInMessages();
    const QString page = ReadPage("docs/troubleshooting.md"_q);
    const QList<uint32_t> noAlerts = {PlugInMessage::cPlugInNotAcquired, PlugInMessage::cExportError,
                                      PlugInMessage::cFrame};
    for (uint32_t code = PlugInMessage::cPlugInNotAcquired; code <= PlugInMessage::cNoBook; ++code) {
        GString text;
        ASSERT_TRUE(GStringPool::GetString(code, text)) << code;
        EXPECT_TRUE(noAlerts.contains(code) || page.contains(text.section("%1"_q, 0, 0).trimmed()))
            << text.toStdString();
    }
    GStringPool::Finalize();
}

TEST(DocumentsTest, EveryLinkLeadsToAFile)
{
    QStringList pages = {"README.md"_q};
    QDirIterator files(cDocuments + "/docs"_q, {"*.md"_q}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        pages.append(QDir(cDocuments).relativeFilePath(files.next()));
    for (const QString& page : pages) {
        QRegularExpressionMatchIterator links =
            QRegularExpression("\\]\\(([^)#:]+)[)#]"_q).globalMatch(ReadPage(page));
        while (links.hasNext()) {
            const QString target = links.next().captured(1);
            EXPECT_TRUE(QFileInfo::exists(QFileInfo(cDocuments + QLatin1Char('/') + page).path() +
                                          QLatin1Char('/') + target))
                << page.toStdString() << ": " << target.toStdString();
        }
    }
}
