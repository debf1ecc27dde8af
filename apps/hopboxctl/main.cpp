#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/MacTypeCommand.h"
#include "apps/hopboxctl/PrefsCommand.h"
#include "apps/hopboxctl/ZipCommand.h"

#include <QCoreApplication>

#include <exception>
#include <vector>

namespace
{
// Every command, in the order of the usage text. A command lives in a file of its own.
const std::vector<Command>& GetCommands()
{
    static const std::vector<Command> commands = {
        cCreateCommand,  cListCommand,   cShowCommand,   cSetCommand,     cRemoveCommand, cCheckCommand,
        cOriginsCommand, cSubmitCommand, cNotifyCommand, cMacTypeCommand, cPrefsCommand,  cZipCommand};
    return commands;
}

QString GetUsage()
{
    QString usage = QStringLiteral("usage:\n");
    for (const Command& command : GetCommands()) {
        for (const QString& line : QString::fromUtf8(command.usage).split(QLatin1Char('\n')))
            usage += QLatin1String("  hopboxctl ") + line + QLatin1Char('\n');
    }
    return usage;
}

int RunCommand(const Command& command, const QStringList& arguments)
{
    try {
        return command.run(arguments);
    } catch (const std::exception& error) {
        PrintError(QString::fromUtf8(error.what()));
        return cExitFailed;
    }
}
}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    int status = cExitUsage;
    for (const Command& command : GetCommands()) {
        if (!arguments.isEmpty() && arguments.first() == QLatin1String(command.name))
            status = RunCommand(command, arguments.mid(1));
    }
    if (status == cExitUsage)
        PrintError(QLatin1String("wrong call\n") + GetUsage());
    return status;
}
