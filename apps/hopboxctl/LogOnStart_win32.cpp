#include "apps/hopboxctl/LogOnStart.h"

#include "foundation/system/GFileSystemBase.h"

#include <QProcess>
#include <QSettings>

#include <windows.h>

#include <shellapi.h>

namespace
{
const QString cRunKey =
    QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run");

// What the names of this root's values begin with: all roots share the user's registry key.
QString GetPrefix()
{
    return QStringLiteral("Hopbox receiver%1 ").arg(GFileSystemBase::GetRootMark());
}

// A word as programs read it out of a command line: backslashes count only before a quote.
QString Quote(const QString& word)
{
    QString text = QStringLiteral("\"");
    int slashes = 0;
    for (const QChar character : word) {
        if (character == QLatin1Char('"'))
            text += QString(slashes + 1, QLatin1Char('\\'));
        slashes = character == QLatin1Char('\\') ? slashes + 1 : 0;
        text += character;
    }
    return text + QString(slashes, QLatin1Char('\\')) + QLatin1Char('"');
}

QString GetFault(QSettings& run)
{
    run.sync();
    return run.status() == QSettings::NoError
               ? QString()
               : QStringLiteral("The registry key \"%1\" can't be written.").arg(cRunKey);
}
}  // namespace

QString LogOnStart::GetPlace(const QString& key)
{
    return cRunKey + QLatin1Char('\\') + GetPrefix() + key;
}

QStringList LogOnStart::GetKeys()
{
    QStringList keys;
    const QString prefix = GetPrefix();
    for (const QString& name : QSettings(cRunKey, QSettings::NativeFormat).childKeys()) {
        if (name.startsWith(prefix))
            keys.append(name.mid(prefix.size()));
    }
    return keys;
}

QStringList LogOnStart::GetWords(const QString& key)
{
    const QString line = QSettings(cRunKey, QSettings::NativeFormat).value(GetPrefix() + key).toString();
    int count = 0;
    LPWSTR* const parts =
        line.isEmpty() ? nullptr : CommandLineToArgvW(reinterpret_cast<LPCWSTR>(line.utf16()), &count);
    QStringList words;
    for (int at = 0; parts != nullptr && at < count; ++at)
        words.append(QString::fromWCharArray(parts[at]));
    LocalFree(parts);
    return words;
}

QString LogOnStart::Write(const Call& call)
{
    QStringList words;
    for (const QString& word : call.words)
        words.append(Quote(word));
    QSettings run(cRunKey, QSettings::NativeFormat);
    run.setValue(GetPrefix() + call.key, words.join(QLatin1Char(' ')));
    return GetFault(run);
}

QString LogOnStart::Remove(const QString& key)
{
    QSettings run(cRunKey, QSettings::NativeFormat);
    run.remove(GetPrefix() + key);
    return GetFault(run);
}

QString LogOnStart::Start(const Call& call)
{
    return QProcess::startDetached(call.words.first(), call.words.mid(1))
               ? QString()
               : QStringLiteral("\"%1\" can't be started.").arg(call.words.first());
}

// Nothing knows which process it is.
QString LogOnStart::Stop(const QString&)
{
    return QStringLiteral("A receiver that runs goes on until you log off.");
}
