#include "foundation/strings/GStringPool.h"
#include "plugin/messages/MessageCodes.h"
#include "plugin/messages/MessageTable.h"
#include "tests/support/LeakOptions.h"
#include "tests/support/Test.h"

#include <QDirIterator>
#include <QProcess>
#include <QRegularExpression>

#include <sys/stat.h>
#include <unistd.h>

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
    const std::pair<const char*, const char*> cases[] = {
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
    for (const auto& [pattern, word] : cases)
        text.replace(QRegularExpression(QLatin1String(pattern)), QLatin1String(word));
    return text;
}

// Who follows a page. Somebody else than this user has rights and a home of his own, and no MORVANE_ROOT.
struct User
{
    uid_t number = 0;  // 0: this user
    gid_t group = 0;   // one more, beside his own
};

// A Hopbox "Press".
const char* const cMakeHopbox =
    "printf '<< /CompatibilityLevel 1.4 >> setdistillerparams' > Press.joboptions\n"
    "hopboxctl create Press --job-options Press.joboptions > /dev/null\n";

// A document of four pages with all its images, and samples of job options.
const char* const cMakeDocument =
    "cp -r " DOCUMENTS
    "/samples /usr/share/scribus/templates/nl2/nl2.png .\n"
    "zcat /usr/share/scribus/templates/nl2/nl2.sla.gz | sed 's|PFILE=\"[^\"]*/[^\"]*\"|PFILE=\"nl2.png\"|' > "
    "YOUR.sla\n";

// A shell of a user who follows a page, in a folder in place of the page's own.
class Walk
{
public:
    Walk(const QString& folder, const QString& shown, const User& user = {})
        : mFolder(folder), mShown(shown), mUser(user)
    {
        EXPECT_TRUE(QDir().mkpath(mFolder + "/Temp"_q));
        // In place of the service manager, which a test has no right to.
        EXPECT_TRUE(WriteFile(mFolder + "/bin/systemctl"_q, "#!/bin/sh\n"));
        QFile::setPermissions(mFolder + "/bin/systemctl"_q,
                              QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther);
        if (mUser.number == 0)
            return;
        for (const char* name : {"", "/Temp"}) {
            const QByteArray path = (mFolder + QLatin1String(name)).toUtf8();
            EXPECT_EQ(chown(path.constData(), mUser.number, mUser.number), 0);
        }
    }

    // Types every step; gives the output of each and, where it failed, a line "status N".
    QStringList Type(const QVector<Step>& steps)
    {
        QString script = "set -m; trap 'kill $(jobs -p) 2> /dev/null' EXIT\n"_q;
        for (const Step& step : steps)
            script += "{ "_q + Localize(step.command) +
                      "\n} 2>&1; s=$?; [ $s = 0 ] || echo \"status $s\"; printf '\\f'\n"_q;
        QStringList call = {"bash"_q, "-c"_q, script};
        if (mUser.number != 0)
            call = QStringList{"setpriv"_q,
                               "--reuid"_q,
                               QString::number(mUser.number),
                               "--regid"_q,
                               QString::number(mUser.number),
                               "--groups"_q,
                               QString::number(mUser.group)} +
                   call;
        QProcess shell;
        shell.setProcessEnvironment(MakeEnvironment());
        shell.setWorkingDirectory(mFolder);
        shell.start(call.first(), call.mid(1));
        EXPECT_TRUE(shell.waitForFinished(300000));
        return QString::fromUtf8(shell.readAllStandardOutput()).split(QLatin1Char('\f'));
    }

    // What the page shows, as it is here.
    QString Localize(QString text) const
    {
        if (mUser.number != 0) {
            text.replace(mShown + "/root/AppData"_q, mFolder + "/.config"_q);
            text.replace(mShown + "/root"_q, mFolder);
        }
        return text.replace(mShown, mFolder);
    }

private:
    QProcessEnvironment MakeEnvironment() const
    {
        QProcessEnvironment environment =
            mUser.number == 0 ? QProcessEnvironment::systemEnvironment() : QProcessEnvironment();
        const QString programs = QFileInfo(GetProgramPath("hopboxctl")).path();
        environment.insert("PATH"_q,
                           mFolder + "/bin:"_q + programs + QLatin1Char(':') + qEnvironmentVariable("PATH"));
        if (mUser.number == 0) {
            environment.insert("MORVANE_ROOT"_q, mFolder + "/root"_q);
            environment.insert("XDG_CONFIG_HOME"_q, mFolder + "/config"_q);
        } else {
            environment.insert("HOME"_q, mFolder);
            environment.insert("TMPDIR"_q, mFolder + "/Temp"_q);
            environment.insert("LANG"_q, "C.UTF-8"_q);
            environment.insert("LOGNAME"_q, "anna"_q);
        }
        environment.insert("LSAN_OPTIONS"_q, QString::fromUtf8(WriteLeakOptions(mFolder)));
        return environment;
    }

    QString mFolder;
    QString mShown;
    User mUser;
};

// Types the steps of a page, and compares what comes out with what the page shows.
void Follow(const QString& page, Walk walk, int leastSteps)
{
    const QVector<Step> steps = ReadSteps(ReadPage(page));
    ASSERT_GE(steps.size(), leastSteps);
    const QStringList outputs = walk.Type(steps);
    ASSERT_EQ(outputs.size(), steps.size() + 1);
    for (int at = 0; at < steps.size(); ++at) {
        const QString output = Normalize(outputs.at(at)).remove(QRegularExpression("status \\d+\n$"_q));
        const bool mayFail = steps.at(at).output.contains(QRegularExpression("^hopboxctl: |\"failed\""_q));
        EXPECT_TRUE(mayFail || !outputs.at(at).contains(QRegularExpression("status \\d+\n$"_q)))
            << steps.at(at).command.toStdString() << ": " << outputs.at(at).toStdString();
        if (!steps.at(at).output.isEmpty()) {
            EXPECT_EQ(output.toStdString(), Normalize(walk.Localize(steps.at(at).output)).toStdString())
                << steps.at(at).command.toStdString();
        }
    }
}
}  // namespace

TEST(DocumentsTest, WhatAPageSaysToTypeGivesWhatItShows)
{
    const struct
    {
        const char *page, *folder;
        int leastSteps;
        const char* before;  // what its reader has done or has
    } pages[] = {
        {"docs/guide.md", "/tmp/hbguide", 15, ""},
        {"docs/hopboxctl.md", "/tmp/hbdemo", 25, ""},
        {"docs/layout-host.md", "/tmp/hbdemo", 3, cMakeHopbox},
        {"docs/dialog.md", "/tmp/hbdemo", 3, cMakeHopbox},
        {"docs/settings.md", "/tmp/hbdemo", 1, ""},
        {"README.md", "/tmp/hopboxes", 3, cMakeDocument},
    };
    for (const auto& page : pages) {
        SCOPED_TRACE(page.page);
        const Sandbox sandbox;
        Walk walk(sandbox.GetPath("walk"_q), QLatin1String(page.folder));
        ASSERT_EQ(walk.Type({{QLatin1String(page.before), {}}}).first(), QString());
        Follow(QLatin1String(page.page), walk, page.leastSteps);
    }
}

// That of hopboxctl, which has commands, is tried beside it.
TEST(DocumentsTest, TheExamplesOfTheHelpWork)
{
    for (const char* program : {"PrinterProcessorWin.exe", "layout-host"}) {
        SCOPED_TRACE(program);
        const Sandbox sandbox;
        Walk walk(sandbox.GetPath("walk"_q), "/nowhere"_q);
        const QString help = walk.Type({{QLatin1String(program) + " --help"_q, {}}}).first();
        const QString manual =
            walk.Type({{QLatin1String(program) + " --manual"_q, {}}}).first().remove(QLatin1Char('\\'));
        QVector<Step> steps = {
            {QLatin1String(cMakeDocument) + "mv YOUR.sla Report.sla\n"_q + QLatin1String(cMakeHopbox), {}},
            {"PrinterProcessorWin.exe --inbox theirs > /dev/null 2> log &"_q, {}},
            {"until grep -q ready log; do sleep 0.1; done"_q, {}}};
        for (const QString& line : help.section("\nexamples:\n"_q, 1).split(QLatin1Char('\n'))) {
            if (!line.startsWith("  "_q + QLatin1String(program)))
                continue;
            steps.append({line.trimmed(), {}});
            EXPECT_TRUE(manual.contains(line.trimmed())) << line.toStdString();
        }
        ASSERT_GT(steps.size(), 4);
        const QString outputs = walk.Type(steps).join(QString());
        EXPECT_FALSE(outputs.contains("status "_q)) << outputs.toStdString();
    }
}

// For an ordinary user the test above is that already, but for the root of his own, which keeps his files
// out.
TEST(DocumentsTest, TheGuideHoldsForOrdinaryUsersWithoutARootOfTheirOwn)
{
    if (geteuid() != 0)
        return;
    constexpr User cFirst{61201, 61210};
    constexpr User cSecond{61202, 61202};
    const QTemporaryDir folder;
    ASSERT_EQ(chmod(folder.path().toUtf8().constData(), 0755), 0);
    const QString first = folder.filePath("first"_q);
    const QString second = folder.filePath("second"_q);
    const Walk walk(first, "/tmp/hbguide"_q, cFirst);
    const QByteArray inbox = (first + "/inbox"_q).toUtf8();
    ASSERT_TRUE(mkdir(inbox.constData(), 0750) == 0 &&
                chown(inbox.constData(), cFirst.number, cFirst.group) == 0);
    Follow("docs/guide.md"_q, walk, 15);
    struct stat status = {};
    ASSERT_EQ(stat((inbox + "/nl2.sla.pdf").constData(), &status), 0);
    EXPECT_EQ(status.st_uid, cFirst.number);
    EXPECT_EQ(status.st_gid, cFirst.group) << "the group of the inbox";
    EXPECT_EQ(status.st_mode & 0777, 0644U);

    Walk move(second, "/tmp/hbguide"_q, cSecond);
    const QString carried = second + "/Press.hopbox"_q;
    ASSERT_TRUE(QFile::copy(first + "/Press.hopbox"_q, carried));
    ASSERT_EQ(chown(carried.toUtf8().constData(), cSecond.number, cSecond.number), 0);
    const QStringList outputs = move.Type({
        {"hopboxctl import Press.hopbox --name Moved > /dev/null && hopboxctl check Moved"_q, {}},
        {"PrinterProcessorWin.exe --inbox inbox --count 1 --timeout 90 > tickets.json 2> receiver.log &"_q,
         {}},
        {"until grep -q ready receiver.log; do sleep 0.1; done"_q, {}},
        {"layout-host --export /usr/share/scribus/templates/nl2/nl2.sla.gz --hopbox Moved --pages 1 --force > out.json"_q,
         {}},
        {"wait"_q, {}},
    });
    EXPECT_TRUE(outputs.first().contains(second + "/.config/Morvane/Hopbox/Cache/Settings/Moved/"_q))
        << outputs.first().toStdString();
    EXPECT_EQ(QDir(second + "/inbox"_q).entryList(QDir::Files), QStringList("nl2.sla.pdf"_q))
        << outputs.join(QLatin1Char('|')).toStdString();
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
    const QString format = ReadPage("docs/formats/plugin-settings.md"_q);
    QRegularExpressionMatchIterator general =
        QRegularExpression("\n(\\| `General` \\| `\\w+` \\|)"_q).globalMatch(format);
    ASSERT_TRUE(general.hasNext());
    while (general.hasNext()) {
        const QString row = general.next().captured(1);
        EXPECT_TRUE(settingsPage.contains(QLatin1Char('\n') + row)) << row.toStdString();
    }

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
