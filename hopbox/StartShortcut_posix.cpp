#include "hopbox/StartShortcut.h"

#include "foundation/core/GException.h"
#include "foundation/system/GDurableFile.h"

#include <QFile>

namespace
{
// A value of a desktop entry: a backslash leads the escapes.
GString EscapeValue(GString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\n'), QLatin1String("\\n"));
    text.replace(QLatin1Char('\t'), QLatin1String("\\t"));
    text.replace(QLatin1Char('\r'), QLatin1String("\\r"));
    if (text.startsWith(QLatin1Char(' ')))
        text.replace(0, 1, QLatin1String("\\s"));
    return text;
}

// An argument of the command line in a desktop entry: in quotes, within which a backslash leads what a shell
// would take for its own, and with the percent sign doubled, which leads a field code.
GString QuoteArgument(const GString& argument)
{
    GString quoted(QLatin1Char('"'));
    for (const QChar character : argument) {
        if (QStringLiteral("\"`$\\").contains(character))
            quoted += QLatin1Char('\\');
        else if (character == QLatin1Char('%'))
            quoted += QLatin1Char('%');
        quoted += character;
    }
    return quoted + QLatin1Char('"');
}

// The command that runs a program. The name of a program may hold no equal sign, and desktops look it up
// without regard to a doubled percent sign; so one with either is run by the shell, for which it is an
// argument.
GString GetCommand(const GString& program)
{
    if (!program.contains(QLatin1Char('=')) && !program.contains(QLatin1Char('%')))
        return QuoteArgument(program);
    return QLatin1String("/bin/sh -c ") + QuoteArgument(QStringLiteral("exec \"$0\"")) + QLatin1Char(' ') +
           QuoteArgument(program);
}

GString GetDesktopEntry(const GString& applicationName, const GPathName& folder)
{
    const GString program = folder.GetChild(applicationName + QLatin1String(".exe")).GetNativePath();
    const auto line = [](const char* key, const GString& value) {
        return QLatin1String(key) + QLatin1Char('=') + EscapeValue(value) + QLatin1Char('\n');
    };
    return QLatin1String("[Desktop Entry]\n") + line("Type", QStringLiteral("Application")) +
           line("Version", QStringLiteral("1.0")) + line("Name", applicationName) +
           line("Exec", GetCommand(program)) + line("Path", folder.GetNativePath()) +
           line("Terminal", QStringLiteral("false"));
}

bool IsFileName(const GString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && !name.contains(QChar(0));
}
}  // namespace

bool MakeStartShortcut(const GString& applicationName, const GPathName& folder,
                       const GPathName& shortcutPath) noexcept
{
    if (!IsFileName(applicationName) || !folder.IsAbsolute())
        return false;
    try {
        const GBuffer entry = GetDesktopEntry(applicationName, folder).toUtf8();
        GDurableFile file(shortcutPath);
        file.Write(entry.constData(), entry.size());
        file.Commit();
        // Desktops start only entries that are marked as executable.
        QFile shortcut(shortcutPath.GetNativePath());
        const QFileDevice::Permissions rights = shortcut.permissions();
        return rights != 0 && shortcut.setPermissions(rights | QFile::ExeOwner | QFile::ExeUser);
    } catch (const GException&) {
        return false;
    }
}
