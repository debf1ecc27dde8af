#include "SimulatedApplication.h"

#include <QDir>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QThread>

namespace
{
QByteArray ToLine(const QJsonObject& object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}
}  // namespace

QProcessEnvironment MakeHelperEnvironment(const Workplace& workplace)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM"_q, "offscreen"_q);
    environment.insert("QT_QPA_GENERIC_PLUGINS"_q, "hand"_q);
    environment.insert("QT_PLUGIN_PATH"_q, QStringLiteral(HAND_FOLDER));
    environment.insert("HAND_STEPS"_q, workplace.sandbox.GetPath("steps"_q));
    environment.insert("HAND_LOG"_q, workplace.sandbox.GetPath("windows"_q));
    environment.insert("HOPBOX_PLUGIN"_q, qEnvironmentVariable("TEST_MODULE", QStringLiteral(HOPBOX_MODULE)));
    environment.insert("LSAN_OPTIONS"_q, "exitcode=0"_q);
    return environment;
}
Workplace::Workplace(const QByteArray& jobOptions, const QStringList& settings)
{
    const QString options = sandbox.GetPath("Press.joboptions"_q);
    EXPECT_TRUE(WriteFile(options, jobOptions));
    QStringList create{"create"_q, "Press"_q, "--job-options"_q, options};
    for (const QString& setting : settings)
        create << "--setting"_q << setting;
    EXPECT_EQ(QProcess::execute(GetProgramPath("hopboxctl"), create), 0);
    EXPECT_TRUE(QDir().mkpath(sandbox.GetPath("app/Hopbox"_q)));
    EXPECT_TRUE(QFile::copy(QStringLiteral(SCRIPT), sandbox.GetPath("app/hopbox.jsx"_q)));
    EXPECT_TRUE(QFile::link(GetProgramPath("hopbox-bridge"), sandbox.GetPath("app/Hopbox/hopbox-bridge"_q)));
    SetSteps({});
    receiver =
        std::make_unique<PrinterProcessor>(sandbox, QStringList{"--inbox"_q, sandbox.GetPath("Inbox"_q)});
}

Workplace::~Workplace()
{
    EXPECT_TRUE(WaitForHelpersEnd());
}

bool Workplace::WaitForHelpersEnd() const
{
    constexpr int cPatience = 60000;
    QElapsedTimer timer;
    timer.start();
    while (QFile::exists(GetPlaceFile()) && timer.elapsed() < cPatience)
        QThread::msleep(10);
    return !QFile::exists(GetPlaceFile());
}

QString Workplace::MakeDocument(const QString& name, const QStringList& pages, const QStringList& links,
                                const QString& fontStatus) const
{
    const QJsonObject document{{"pages"_q, QJsonArray::fromStringList(pages)},
                               {"links"_q, QJsonArray::fromStringList(links)},
                               {"fonts"_q, QJsonArray{QJsonArray{"Garamond"_q, fontStatus}}}};
    EXPECT_TRUE(WriteFile(sandbox.GetPath(name), ToLine(document)));
    return sandbox.GetPath(name);
}

QString Workplace::MakeBook(const QString& name, const QStringList& documents) const
{
    const QJsonObject book{{"documents"_q, QJsonArray::fromStringList(documents)}, {"modified"_q, true}};
    EXPECT_TRUE(WriteFile(sandbox.GetPath(name), ToLine(book)));
    return sandbox.GetPath(name);
}

QStringList Workplace::TakeWindows()
{
    QFile file(sandbox.GetPath("windows"_q));
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QStringList all = QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList fresh = all.mid(mWindows);
    mWindows = all.size();
    return fresh;
}

QStringList Workplace::GetReceived() const
{
    return QDir(sandbox.GetPath("Inbox"_q)).entryList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot);
}

QString Workplace::GetPlaceFile() const
{
    return sandbox.GetPath("AppData/Morvane Prefs Folder/Hopbox Bridge/bridge.json"_q);
}

QJsonObject Workplace::ReadPlace() const
{
    return QJsonDocument::fromJson(ReadFile(GetPlaceFile())).object();
}

SimulatedApplication::SimulatedApplication(const Workplace& workplace, QJsonObject setting)
{
    setting.insert("userData"_q, workplace.sandbox.GetPath("AppData"_q));
    setting.insert("script"_q, workplace.sandbox.GetPath("app/hopbox.jsx"_q));
    mProcess.setProcessEnvironment(MakeHelperEnvironment(workplace));
    mProcess.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    const QString folder = QStringLiteral(SIMULATION_FOLDER);
    mProcess.start(QStringLiteral(SIMULATION), {QString::fromUtf8(ToLine(setting)), folder + "/types.js"_q,
                                                folder + "/application.js"_q});
    EXPECT_TRUE(mProcess.waitForStarted());
}

SimulatedApplication::~SimulatedApplication()
{
    mProcess.closeWriteChannel();
    if (!mProcess.waitForFinished())
        mProcess.kill();
    mProcess.waitForFinished();
}

void SimulatedApplication::Do(const char* what, QJsonObject arguments)
{
    arguments.insert("do"_q, QLatin1String(what));
    mProcess.write(ToLine(arguments));
    mProcess.waitForBytesWritten();
}

QJsonObject SimulatedApplication::Hear(const char* key)
{
    constexpr int cPatience = 60000;
    while (mProcess.canReadLine() || mProcess.waitForReadyRead(cPatience)) {
        while (mProcess.canReadLine()) {
            const QJsonObject event = QJsonDocument::fromJson(mProcess.readLine()).object();
            heard.append(event);
            if (event.contains(QLatin1String(key)))
                return event;
        }
    }
    return {};
}

QJsonObject SimulatedApplication::WaitForRest()
{
    constexpr int cPatience = 60000;
    constexpr int cPause = 20;
    QElapsedTimer timer;
    timer.start();
    QJsonObject report;
    do {
        QThread::msleep(cPause);
        Do("report");
        report = Hear("idle");
    } while (report.value("idle"_q).toInt() > 0 && timer.elapsed() < cPatience);
    EXPECT_EQ(report.value("idle"_q), 0) << "the script is still at work";
    return report;
}

QJsonArray SimulatedApplication::Choose(const char* menu)
{
    heard = {};
    Do("choose", {{"menu"_q, QLatin1String(menu)}});
    WaitForRest();
    return heard;
}

bool SimulatedApplication::WaitForEnd()
{
    return mProcess.waitForFinished(60000);
}

QJsonObject Find(const QJsonArray& events, const char* key)
{
    for (const QJsonValue& event : events) {
        if (event.toObject().contains(QLatin1String(key)))
            return event.toObject();
    }
    return {};
}
