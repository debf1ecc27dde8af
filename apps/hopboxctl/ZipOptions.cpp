#include "apps/hopboxctl/ZipOptions.h"

#include "foundation/cli/CliConsole.h"

#include <QFile>
#include <QTextCodec>

#include <cstdio>

namespace
{
constexpr qint64 cLongest = 4096;  // bytes that a password may have

// A file that is not in UTF-8 is in Latin-1, of which every byte is a character.
QString Decode(const QByteArray& line)
{
    QTextCodec::ConverterState state;
    const QString text = QTextCodec::codecForName("UTF-8")->toUnicode(line.constData(), line.size(), &state);
    return state.invalidChars + state.remainingChars == 0 ? text : QString::fromLatin1(line);
}

// The first line of a file, or of standard input for "-".
std::optional<QString> ReadLine(const QString& path)
{
    QFile file(path);
    const bool isOpen =
        path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
    if (!isOpen) {
        PrintError(
            QStringLiteral("--password-file: \"%1\" can't be read: %2.").arg(path, file.errorString()));
        return {};
    }
    QByteArray line = file.readLine(cLongest);
    while (line.endsWith('\n') || line.endsWith('\r'))
        line.chop(1);
    if (!line.isEmpty() && !line.contains('\0'))
        return Decode(line);
    PrintError(
        QStringLiteral("--password-file: there is no password in the first line of \"%1\".").arg(path));
    return {};
}

std::optional<QString> AskForPassword()
{
    QString password;
    if (CliConsole::AskSecret(QStringLiteral("Password: "), password))
        return password;
    PrintError(QStringLiteral("--ask-password: no password was typed, or there is no terminal."));
    return {};
}
}  // namespace

std::vector<CliOption> ZipOptions::GetPasswordOptions()
{
    return {{"ask-password", "", "ask for the password on the terminal"},
            {"password-file", "FILE",
             "take the password from the first line of a file, in UTF-8 or Latin-1; - is standard input"},
            {"password", "TEXT",
             "the password itself; everyone on this computer can see it while the command runs"}};
}

QString ZipOptions::FindFault(const CliCall& call)
{
    int count = 0;
    for (const char* option : {"ask-password", "password-file", "password"})
        count += call.Has(option) ? 1 : 0;
    return count > 1 ? QStringLiteral("Give the password in one way only.") : QString();
}

std::optional<QString> ZipOptions::GetPassword(const CliCall& call)
{
    if (call.Has("ask-password"))
        return AskForPassword();
    return call.Has("password-file") ? ReadLine(call.Get("password-file")) : call.Get("password");
}
