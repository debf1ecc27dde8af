#include "apps/hopboxctl/MacTypeCommand.h"

#include "apps/hopboxctl/ErrorPrinter.h"
#include "archive/mac/AppleDouble.h"
#include "archive/mac/FileExtensionManager.h"
#include "archive/mac/PcExchange.h"
#include "foundation/trace/GTrace.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonObject>

#include <memory>

using Morvane::FileExtensionManager;
using Morvane::MacFileInfo;
using Morvane::PcExchange;

namespace
{
void ShowInfo(const MacFileInfo& info, const QString& extension)
{
    SetResult(QJsonObject{{QStringLiteral("type"), info.type},
                          {QStringLiteral("creator"), info.creator},
                          {QStringLiteral("extension"), extension}});
    Print(QLatin1String("type: ") + info.type + QLatin1String("\ncreator: ") + info.creator +
          QLatin1String("\nextension: ") + extension + QLatin1Char('\n'));
}

int RunMacType(const CliCall& call)
{
    const QString file = call.GetArgument(0);
    const auto printer = std::make_shared<ErrorPrinter>();
    GTrace::SetLogger(printer);
    const QString table = call.Has("table") ? call.Get("table")
                                            : QCoreApplication::applicationDirPath() +
                                                  QLatin1String("/Resources/MacFileTypes.xml");
    static_cast<void>(PcExchange::createPcExchange(table));  // what is wrong is printed, and fails below
    MacFileInfo info;
    if (!QFileInfo::exists(file))
        PrintError(QStringLiteral("There is no file \"%1\".").arg(file));
    else if (FileExtensionManager::getFileInfo(file, &info))
        ShowInfo(info, FileExtensionManager::getExtension(file));
    else if (!printer->hasErrors())
        PrintError(QStringLiteral("\"%1\" has no AppleDouble file.").arg(file));
    const bool isKnown = !info.type.isEmpty() || !info.creator.isEmpty() || !info.finderInfo.isEmpty();
    return isKnown && !printer->hasErrors() ? cCliDone : cCliFailed;
}
}  // namespace

const Command cMacTypeCommand = {
    {"mactype",
     "print the Mac type and creator of a file",
     "They stand in the AppleDouble file beside it, \"._\" and its name.",
     {{"FILE", "the file"}},
     {{"table", "FILE", "the table of types; the one beside the program without it"}},
     {{"hopboxctl mactype Logo",
       "Prints the type, the creator and the file name extension that belongs to them."}}},
    RunMacType};
