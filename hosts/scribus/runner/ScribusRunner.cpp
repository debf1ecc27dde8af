#include "hosts/scribus/runner/ScribusRunner.h"

#include "foundation/core/GException.h"
#include "foundation/system/GBoundProcess.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemFolders.h"
#include "foundation/trace/GTrace.h"
#include "hosts/scribus/runner/AnswerCache.h"
#include "hosts/scribus/runner/HostScript.h"
#include "hosts/scribus/runner/IHostFrontend.h"
#include "hosts/scribus/runner/IdleWatch.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QStandardPaths>

#include <algorithm>

// The system takes no longer argument.
constexpr int cLongestRequest = 100 * 1024;

// No answer of host.py is larger; a document of 10,000 pages has one of about 1 MB.
constexpr qint64 cLargestAnswer = 64 * 1024 * 1024;

constexpr int cOutputKept = 256 * 1024;  // of what a program prints, in bytes
constexpr int cWaitMilliseconds = 50;    // between two looks at the frontend
constexpr int cDialogSeconds = 8;        // without any work, after which it is a dialog that waits
constexpr int cEndMilliseconds = 2000;   // that a program has to end when it is told to

namespace
{
bool WriteFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

// Settings for the system's font library: what the system has, and the folders.
QByteArray MakeFontSettings(const QStringList& folders)
{
    QString text = QStringLiteral(
        "<?xml version=\"1.0\"?>\n<!DOCTYPE fontconfig SYSTEM \"fonts.dtd\">\n<fontconfig>\n"
        "<include ignore_missing=\"yes\">/etc/fonts/fonts.conf</include>\n");
    for (const QString& folder : folders)
        text += QStringLiteral("<dir>%1</dir>\n").arg(folder.toHtmlEscaped());
    return (text + QStringLiteral("</fontconfig>\n")).toUtf8();
}

QProcessEnvironment MakeEnvironment(const QString& home, const QString& scratch)
{
    QProcessEnvironment environment;
    const auto set = [&](const char* name, const QString& value) {
        environment.insert(QLatin1String(name), value);
    };
    set("PATH", QStringLiteral("/usr/bin:/bin"));
    set("LANG", QStringLiteral("C.UTF-8"));
    set("QT_QPA_PLATFORM", QStringLiteral("offscreen"));
    set("HOME", home);
    set("XDG_CONFIG_HOME", home + QStringLiteral("/.config"));
    // Scribus draws placed files into pictures of one fixed name in there: two exports at once would take
    // each other's.
    set("XDG_DATA_HOME", scratch + QStringLiteral("/data"));
    set("XDG_CACHE_HOME", home + QStringLiteral("/.cache"));
    set("XDG_RUNTIME_DIR", scratch);
    set("TMPDIR", scratch);
    set("FONTCONFIG_FILE", scratch + QStringLiteral("/fonts.conf"));
    return environment;
}

QString GetScratchTemplate()
{
    try {
        return GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetNativePath() +
               QStringLiteral("/layout-host-XXXXXX");
    } catch (const GException&) {
        return {};
    }
}

// The last lines of what a program printed, on one line.
QString TakeLastLines(const QByteArray& output)
{
    const QStringList lines = QString::fromUtf8(output).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    constexpr int cLinesKept = 6;
    return lines.mid(qMax(0, lines.size() - cLinesKept)).join(QStringLiteral(" / "));
}

void LogFailure(const QString& text)
{
    GTrace::Error(QStringLiteral("ScribusRunner"), text);
}

// What the script's answer says of a failure.
GResult JudgeAnswer(const QJsonObject& values)
{
    const QJsonValue error = values.value(QLatin1String("error"));
    if (error.isUndefined())
        return GResult::Success();
    const QString reason = values.value(QLatin1String("opened")).toBool()
                               ? QStringLiteral("Scribus failed: %1.").arg(error.toString())
                               : QStringLiteral("Scribus can't open the document; it may be damaged.");
    LogFailure(QStringLiteral("%1 It said: %2").arg(reason, error.toString()));
    return GResult::Failure(reason);
}
}  // namespace

ScribusSetup ScribusSetup::MakeForUser()
{
    ScribusSetup setup;
    setup.fontFolders = QStandardPaths::standardLocations(QStandardPaths::FontsLocation);
    try {
        const GPathName root = GFileSystemBase::GetRoot();
        const QString cache = root.GetNativePath().isEmpty()
                                  ? QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation)
                                  : root.GetNativePath() + QStringLiteral("/Cache");
        setup.home = cache + QStringLiteral("/layout-host");
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("ScribusSetup::MakeForUser"), error.GetDescription());
    }
    return setup;
}

ScribusRunner::ScribusRunner(const ScribusSetup& setup) : mSetup(setup), mFolder(GetScratchTemplate())
{
    if (mSetup.home.isEmpty())
        mSetup.home = mFolder.filePath(QStringLiteral("home"));
}

bool ScribusRunner::IsCancelled() const
{
    return mFrontend != nullptr && mFrontend->IsCancelled();
}

bool ScribusRunner::Prepare()
{
    if (!mScriptPath.isEmpty())
        return true;
    const QString script = mFolder.filePath(QStringLiteral("host.py"));
    if (!mFolder.isValid() || !QDir().mkpath(mSetup.home) || !WriteFile(script, cHostScript) ||
        !WriteFile(mFolder.filePath(QStringLiteral("fonts.conf")), MakeFontSettings(mSetup.fontFolders)))
        return false;
    mScriptPath = script;
    return true;
}

QString ScribusRunner::MakeScratchPath(const QString& ending)
{
    return mFolder.isValid() ? mFolder.filePath(QStringLiteral("%1.%2").arg(++mScratchCount).arg(ending))
                             : QString();
}

ScribusRunner::Ended ScribusRunner::RunScribus(const QStringList& arguments, const QString& openedPath,
                                               const Parts& parts)
{
    GBoundProcess process(GBoundProcess::Ending::cByForce);
    process.setProcessEnvironment(MakeEnvironment(mSetup.home, mFolder.path()));
    process.setStandardInputFile(QProcess::nullDevice());
    process.setProcessChannelMode(QProcess::MergedChannels);
    Ended ended;
    ended.hasStarted = process.Start(mSetup.scribus, arguments, QIODevice::ReadOnly);
    QElapsedTimer timer;
    timer.start();
    IdleWatch idle(process.processId());
    while (process.state() != QProcess::NotRunning && !ended.isCancelled && !ended.isLate &&
           !ended.isWaiting) {
        process.waitForFinished(cWaitMilliseconds);
        ended.output = (ended.output + process.readAll()).right(cOutputKept);
        if (parts.look)
            parts.look();
        ended.isCancelled = IsCancelled();
        ended.isLate = timer.hasExpired(qint64(mSetup.timeLimitSeconds) * 1000 * parts.count);
        ended.isWaiting =
            !openedPath.isEmpty() && idle.HasWaitedFor(cDialogSeconds) && !QFile::exists(openedPath);
    }
    if (process.state() != QProcess::NotRunning) {
        process.terminate();
        if (!process.waitForFinished(cEndMilliseconds)) {
            process.kill();
            process.waitForFinished(cEndMilliseconds);
        }
    }
    ended.output = (ended.output + process.readAll()).right(cOutputKept);
    ended.hasCrashed = process.exitStatus() == QProcess::CrashExit;
    ended.status = process.exitCode();
    return ended;
}

GResult ScribusRunner::MakeFailure(const Ended& ended, int seconds) const
{
    const QString& program = mSetup.scribus;
    QString reason;
    if (ended.isCancelled)
        reason = GResult::Cancellation().GetReason();
    else if (!ended.hasStarted)
        reason = QStringLiteral("%1 can't be started.").arg(program);
    else if (ended.isWaiting)
        reason = QStringLiteral(
            "Scribus shows a dialog that nobody can see while it opens the document; it was ended.");
    else if (ended.isLate)
        reason = QStringLiteral("%1 took more than %2 s and was ended.").arg(program).arg(seconds);
    else
        reason = QStringLiteral("%1 %2 (%3).")
                     .arg(program, ended.hasCrashed ? QStringLiteral("was killed or crashed")
                                                    : QStringLiteral("failed"))
                     .arg(ended.status);
    // What the program itself says is for whoever looks for the cause.
    LogFailure(QStringLiteral("%1 It said last: %2").arg(reason, TakeLastLines(ended.output)));
    return ended.isCancelled ? GResult::Cancellation() : GResult::Failure(reason);
}

GResult ScribusRunner::CheckRequest(const QByteArray& request)
{
    if (!Prepare())
        return GResult::Failure(QStringLiteral("The folder %1 can't be written.").arg(mFolder.path()));
    if (request.size() > cLongestRequest)
        return GResult::Failure(
            QStringLiteral("The request is too long for Scribus (%1 bytes).").arg(request.size()));
    return GResult::Success();
}

ScribusAnswer ScribusRunner::RunScript(const QString& operation, QJsonObject request)
{
    return RunScript(operation, std::move(request), Parts());
}

ScribusAnswer ScribusRunner::RunScript(const QString& operation, QJsonObject request, const Parts& parts)
{
    const QString answerPath = MakeScratchPath(QStringLiteral("json"));
    request.insert(QStringLiteral("operation"), operation);
    request.insert(QStringLiteral("answer"), answerPath);
    const QString openedPath = answerPath + QStringLiteral(".opened");
    request.insert(QStringLiteral("opened"), openedPath);
    const QByteArray argument = QJsonDocument(request).toJson(QJsonDocument::Compact);
    const GResult check = CheckRequest(argument);
    if (!check.HasSucceeded()) {
        LogFailure(check.GetReason());
        return check;
    }

    const Ended ended = RunScribus({QStringLiteral("-g"), QStringLiteral("-ns"), QStringLiteral("-py"),
                                    mScriptPath, QString::fromUtf8(argument)},
                                   openedPath, parts);
    QFile::remove(openedPath);
    ScribusAnswer answer = GResult::Success();
    if (ended.isCancelled || !ReadAnswer(answerPath, answer))
        return MakeFailure(ended, mSetup.timeLimitSeconds * parts.count);
    if (!answer.HasSucceeded())
        LogFailure(QStringLiteral("Scribus said last: %1").arg(TakeLastLines(ended.output)));
    return answer;
}

bool ScribusRunner::ReadAnswer(const QString& path, ScribusAnswer& answer) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QJsonDocument document = QJsonDocument::fromJson(file.read(cLargestAnswer));
    file.remove();
    if (!document.isObject())
        return false;
    answer = JudgeAnswer(document.object());
    answer.values = document.object();
    return true;
}

// What a file system says of a file or folder, as text.
static QByteArray Describe(const QFileInfo& file)
{
    return QFile::encodeName(file.filePath()) + ' ' + QByteArray::number(file.size()) + ' ' +
           QByteArray::number(file.lastModified().toMSecsSinceEpoch()) + '\n';
}

QByteArray ScribusRunner::GetMark() const
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(Describe(QFileInfo(mSetup.scribus)));
    hash.addData(cHostScript);
    hash.addData(MakeFontSettings(mSetup.fontFolders));
    return hash.result();
}

// The class and the colour space of a colour profile, such as "prtrCMYK".
static QByteArray ReadProfileKind(const QString& profilePath)
{
    QFile file(profilePath);
    const QByteArray header = file.open(QIODevice::ReadOnly) ? file.read(20) : QByteArray();
    return header.mid(12, 8);
}

// All that is in the folders in which Scribus looks for colour profiles.
static QByteArray DescribeProfileFolders()
{
    QByteArrayList files;
    for (const char* folder :
         {"/usr/share/color/icc", "/usr/local/share/color/icc", "/usr/share/scribus/profiles"}) {
        QDirIterator found(QLatin1String(folder), QDir::Files,
                           QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
        while (found.hasNext()) {
            found.next();
            files.append(Describe(found.fileInfo()));
        }
    }
    std::sort(files.begin(), files.end());
    return files.join();
}

// What Scribus prints of its profiles, a line each. Null when it can't be asked.
QByteArray ScribusRunner::AskForProfiles()
{
    const AnswerCache cache(mSetup.home + QStringLiteral("/answers"));
    const QByteArray key = "profiles";
    const QByteArray condition = GetMark() + DescribeProfileFolders();
    QByteArray lines = cache.Find(key, condition);
    if (!lines.isNull() || !Prepare())
        return lines;
    const Ended ended = RunScribus({QStringLiteral("-g"), QStringLiteral("-pi")}, QString(), Parts());
    if (ended.status != 0 || ended.hasCrashed || ended.isCancelled || ended.isLate) {
        static_cast<void>(MakeFailure(ended, mSetup.timeLimitSeconds));  // for the log
        return {};
    }
    lines = ended.output.isEmpty() ? QByteArray("\n") : ended.output;
    cache.Keep(key, condition, lines);
    return lines;
}

const QVector<ColorProfile>& ScribusRunner::GetProfiles()
{
    if (mHasAskedForProfiles)
        return mProfiles;
    const QByteArray lines = AskForProfiles();
    mHasAskedForProfiles = !lines.isNull();
    const QString start = QStringLiteral("Color profile ");
    const QString middle = QStringLiteral(" loaded from ");
    for (const QString& line : QString::fromUtf8(lines).split(QLatin1Char('\n'))) {
        const int end = line.lastIndexOf(middle);
        if (!line.startsWith(start) || end < 0)
            continue;
        ColorProfile profile;
        profile.name = line.mid(start.size(), end - start.size()).trimmed();
        profile.path = QDir::cleanPath(line.mid(end + middle.size()).trimmed());
        const QByteArray kind = ReadProfileKind(profile.path);
        profile.isCmykOutput = kind == "prtrCMYK";
        profile.isRgb = kind.endsWith("RGB ");
        mProfiles.append(profile);
    }
    return mProfiles;
}
