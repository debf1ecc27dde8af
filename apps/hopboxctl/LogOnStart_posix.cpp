#include "apps/hopboxctl/LogOnStart.h"

#include "foundation/system/GSystemFolders.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSaveFile>

namespace
{
const QString cPrefix = QStringLiteral("hopbox-receiver-");
const QString cSuffix = QStringLiteral(".service");

QString GetUnit(const QString& key)
{
    return cPrefix + key + cSuffix;
}

QDir GetFolder()
{
    return QDir(GSystemFolders::GetApplicationData().GetNativePath() + QLatin1String("/systemd/user"));
}

// The link by which the unit belongs to the log-on.
QString GetLink(const QString& key)
{
    return GetFolder().filePath(QLatin1String("default.target.wants/") + GetUnit(key));
}

// Text as units have it: "%" begins a specifier there, and lines end with it.
QByteArray Escape(const QString& text)
{
    QByteArray escaped;
    for (const char byte : text.toUtf8()) {
        const bool isControl = static_cast<uchar>(byte) < ' ' || byte == 0x7F;
        if (byte == '"' || byte == '\\')
            escaped += '\\';
        if (byte == '%')
            escaped += '%';
        escaped += isControl ? "\\x" + QByteArray(1, byte).toHex() : QByteArray(1, byte);
    }
    return escaped;
}

QByteArray Quote(const QString& word)
{
    return '"' + Escape(word) + '"';
}

// What a unit says before the call, which tells the root that its receiver belongs to.
QByteArray MakeServiceHead()
{
    const QString root = qEnvironmentVariable("MORVANE_ROOT");
    QByteArray environment;
    if (!root.isEmpty())
        environment =
            "Environment=" + Quote(QLatin1String("MORVANE_ROOT=") + QDir::current().absoluteFilePath(root)) +
            '\n';
    return "\n[Service]\n" + environment + "ExecStart=";
}

// The colon keeps "$" what it is.
QByteArray MakeUnit(const LogOnStart::Call& call)
{
    QByteArrayList words;
    for (const QString& word : call.words)
        words.append(Quote(words.isEmpty() ? QLatin1Char(':') + word : word));
    return "[Unit]\nDescription=" + Escape(call.summary) + '\n' + MakeServiceHead() + words.join(' ') +
           "\nRestart=on-failure\n\n[Install]\nWantedBy=default.target\n";
}

// The call of a unit as it stands there; empty when the unit is of another root.
QByteArray ReadCall(const QString& key)
{
    QFile unit(LogOnStart::GetPlace(key));
    if (!unit.open(QIODevice::ReadOnly))
        return {};
    const QByteArray head = MakeServiceHead();
    const QByteArray text = unit.readAll();
    const int begin = text.indexOf(head);
    return begin < 0 ? QByteArray() : text.mid(begin + head.size()).split('\n').first();
}

// Asks the user's service manager; gives what it says when it can't.
QString Ask(const QStringList& arguments)
{
    QProcess manager;
    manager.setProcessChannelMode(QProcess::MergedChannels);
    manager.start(QStringLiteral("systemctl"), QStringList(QStringLiteral("--user")) + arguments);
    if (!manager.waitForStarted() || !manager.waitForFinished(-1))
        return QStringLiteral("systemctl: %1").arg(manager.errorString());
    if (manager.exitStatus() == QProcess::NormalExit && manager.exitCode() == 0)
        return {};
    const QString said = QString::fromLocal8Bit(manager.readAll()).trimmed();
    return QStringLiteral("systemctl: %1").arg(said.isEmpty() ? QStringLiteral("it failed") : said);
}
}  // namespace

QString LogOnStart::GetPlace(const QString& key)
{
    return GetFolder().filePath(GetUnit(key));
}

QStringList LogOnStart::GetKeys()
{
    QStringList keys;
    for (const QString& unit : GetFolder().entryList({cPrefix + QLatin1Char('*') + cSuffix}, QDir::Files)) {
        const QString key = unit.mid(cPrefix.size()).chopped(cSuffix.size());
        if (!ReadCall(key).isEmpty())
            keys.append(key);
    }
    return keys;
}

// What MakeUnit has quoted.
QStringList LogOnStart::GetWords(const QString& key)
{
    const QByteArray line = ReadCall(key);
    QStringList words;
    QByteArray word;
    bool isQuoted = false;
    for (int at = 0; at < line.size(); ++at) {
        const char character = line.at(at);
        if (character == '"') {
            isQuoted = !isQuoted;
            if (!isQuoted)
                words.append(QString::fromUtf8(word));
            word.clear();
        } else if (character == '\\' && line.mid(at + 1, 1) == "x") {
            word += QByteArray::fromHex(line.mid(at + 2, 2));
            at += 3;
        } else {
            at += character == '\\' || character == '%' ? 1 : 0;
            word += line.mid(at, 1);
        }
    }
    if (!words.isEmpty() && words.first().startsWith(QLatin1Char(':')))
        words.first().remove(0, 1);
    return words;
}

QString LogOnStart::Write(const Call& call)
{
    QSaveFile file(GetPlace(call.key));
    const QByteArray unit = MakeUnit(call);
    if (!QDir().mkpath(QFileInfo(GetLink(call.key)).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(unit) != unit.size() || !file.commit())
        return QStringLiteral("\"%1\" can't be written: %2").arg(file.fileName(), file.errorString());
    QFile::remove(GetLink(call.key));
    if (!QFile::link(file.fileName(), GetLink(call.key)))
        return QStringLiteral("\"%1\" can't be made.").arg(GetLink(call.key));
    return {};
}

QString LogOnStart::Remove(const QString& key)
{
    QFile unit(GetPlace(key));
    QFile::remove(GetLink(key));
    if (!unit.remove())
        return QStringLiteral("\"%1\" can't be removed: %2").arg(unit.fileName(), unit.errorString());
    Ask({QStringLiteral("daemon-reload")});
    return {};
}

QString LogOnStart::Start(const Call& call)
{
    const QString fault = Ask({QStringLiteral("daemon-reload")});
    return fault.isEmpty() ? Ask({QStringLiteral("restart"), GetUnit(call.key)}) : fault;
}

QString LogOnStart::Stop(const QString& key)
{
    return Ask({QStringLiteral("stop"), GetUnit(key)});
}
