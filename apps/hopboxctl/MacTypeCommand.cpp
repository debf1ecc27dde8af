#include "apps/hopboxctl/MacTypeCommand.h"

#include "apps/hopboxctl/ErrorPrinter.h"
#include "archive/mac/AppleDouble.h"
#include "archive/mac/FileExtensionManager.h"
#include "archive/mac/PcExchange.h"
#include "foundation/trace/GTrace.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

using Morvane::FileExtensionManager;
using Morvane::MacFileInfo;
using Morvane::PcExchange;

namespace
{
struct Call
{
    QString file;
    QString table;
    bool asJson = false;
};

bool ParseCall(const QStringList& arguments, Call* call)
{
    QCommandLineParser parser;
    const QCommandLineOption table(
        QStringLiteral("table"), QString(), QStringLiteral("FILE"),
        QCoreApplication::applicationDirPath() + QLatin1String("/Resources/MacFileTypes.xml"));
    const QCommandLineOption json(QStringLiteral("json"));
    parser.addOptions({table, json});
    if (!parser.parse(QStringList(QStringLiteral("mactype")) + arguments))
        return false;
    if (parser.positionalArguments().size() != 1)
        return false;
    *call = {parser.positionalArguments().first(), parser.value(table), parser.isSet(json)};
    return true;
}

void PrintInfo(const MacFileInfo& info, const QString& extension, bool asJson)
{
    if (asJson) {
        const QJsonObject object{{QStringLiteral("type"), info.type},
                                 {QStringLiteral("creator"), info.creator},
                                 {QStringLiteral("extension"), extension}};
        Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) + QLatin1Char('\n'));
        return;
    }
    Print(QLatin1String("type: ") + info.type + QLatin1String("\ncreator: ") + info.creator +
          QLatin1String("\nextension: ") + extension + QLatin1Char('\n'));
}

int RunMacType(const QStringList& arguments)
{
    Call call;
    if (!ParseCall(arguments, &call))
        return cExitUsage;
    const auto printer = std::make_shared<ErrorPrinter>();
    GTrace::SetLogger(printer);
    PcExchange::createPcExchange(call.table);
    MacFileInfo info;
    if (!QFileInfo::exists(call.file))
        PrintError(QStringLiteral("There is no file '%1'.").arg(call.file));
    else if (FileExtensionManager::getFileInfo(call.file, &info))
        PrintInfo(info, FileExtensionManager::getExtension(call.file), call.asJson);
    else if (!printer->hasErrors())
        PrintError(QStringLiteral("'%1' has no AppleDouble file.").arg(call.file));
    const bool isKnown = !info.type.isEmpty() || !info.creator.isEmpty() || !info.finderInfo.isEmpty();
    return isKnown && !printer->hasErrors() ? cExitDone : cExitFailed;
}
}  // namespace

const Command cMacTypeCommand = {"mactype", "mactype FILE [--table FILE] [--json]", RunMacType};
