#include "apps/hopboxctl/Command.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "apps/hopboxctl/MacTypeCommand.h"
#include "apps/hopboxctl/PrefsCommand.h"
#include "apps/hopboxctl/Program.h"
#include "apps/hopboxctl/ZipCommand.h"
#include "foundation/cli/CliMain.h"
#include "hopbox/HopboxRegistry.h"

#include <QCoreApplication>
#include <QJsonObject>

#include <exception>
#include <vector>

namespace
{
// Every command, in the order of the help.
const std::vector<const Command*>& GetCommands()
{
    static const std::vector<const Command*> commands = {
        &cCreateCommand,          &cListCommand,           &cShowCommand,
        &cCheckCommand,           &cDoctorCommand,         &cSetCommand,
        &cRenameCommand,          &cRemoveCommand,         &cRestoreCommand,
        &cDeleteCommand,          &cExportCommand,         &cImportCommand,
        &cSubmitCommand,          &cNotifyCommand,         &cOriginsCommand,
        &cReceiverInstallCommand, &cReceiverStatusCommand, &cReceiverRemoveCommand,
        &cChannelListCommand,     &cChannelWatchCommand,   &cChannelCleanCommand,
        &cZipListCommand,         &cZipExtractCommand,     &cZipCreateCommand,
        &cZipAddCommand,          &cZipTestCommand,        &cPrefsCommand,
        &cMacTypeCommand};
    return commands;
}

CliProgram MakeDescription()
{
    CliProgram program = {
        "hopboxctl",
        "makes Hopboxes and looks after them",
        "A Hopbox is a named set of PDF settings with a program on your computer that receives the files. "
        "A NAME is a Hopbox's name or its key, as \"hopboxctl list\" shows them.",
        {},
        {{"answers in JSON",
          "Every command takes --json. It then prints one line, an object with these keys:\n\n"
          "  ok        whether the exit status is 0\n"
          "  result    what the command found out; null where there is nothing\n"
          "  errors    the errors, as on standard error\n"
          "  warnings  what is worth knowing though nothing failed\n"
          "  damaged   only when the registry or an archive is damaged: where, and where a copy is\n"
          "  unread    only when the registry is there but can't be read: which file, and why"},
         {"exit status",
          "  0  done\n"
          "  1  failed; standard error says why\n"
          "  2  the call was wrong; standard error names the wrong word"},
         {"environment",
          "  MORVANE_ROOT  a folder for everything that belongs to Hopboxes, in place of your "
          "own"},
         cCliStyle}};
    for (const Command* command : GetCommands()) {
        program.commands.push_back(command->description);
        program.commands.back().options.push_back({"json", "", "print the answer as JSON"});
    }
    return program;
}

int RunCommand(const CliCall& call)
{
    const CliProgram& program = Program::GetDescription();
    const auto place = static_cast<size_t>(call.GetCommand() - program.commands.data());
    try {
        return GetCommands().at(place)->run(call);
    } catch (const UnreadRegistry& error) {
        PrintError(HopboxOutput::GetShown(error.GetDescription()));
        SetUnread(QJsonObject{{QStringLiteral("File"), error.file.GetNativePath()},
                              {QStringLiteral("Reason"), error.reason}});
        return cCliFailed;
    } catch (const std::exception& error) {
        PrintError(QString::fromUtf8(error.what()));
        return cCliFailed;
    }
}
}  // namespace

const CliProgram& Program::GetDescription()
{
    static const CliProgram program = MakeDescription();
    return program;
}

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    CliCall call;
    if (const std::optional<int> status = AnswerCli(Program::GetDescription(), argc, argv, call))
        return *status == cCliWrongCall && QCoreApplication::arguments().contains(QStringLiteral("--json"))
                   ? Program::FinishJson(*status)
                   : *status;
    Program::BeginAnswer(call);
    return Program::FinishAnswer(RunCommand(call));
}
