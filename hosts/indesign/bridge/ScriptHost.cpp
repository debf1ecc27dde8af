#include "hosts/indesign/bridge/ScriptHost.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{
void PutText(const hopbox_sink* sink, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    sink->put(sink->context, bytes.constData(), static_cast<size_t>(bytes.size()));
}

// The application does not take back what a command has made before the user cancels it.
void Remove(const QString& output)
{
    if (QFileInfo(output).isDir())
        QDir(output).removeRecursively();
    else
        QFile::remove(output);
}
}  // namespace

BridgeTalk::Answer ScriptHost::Ask(const char* operation, const QJsonObject& arguments, bool isWork)
{
    return mTalk == nullptr ? BridgeTalk::Answer{HOPBOX_NONE, {}} : mTalk->Ask(operation, arguments, isWork);
}

// Whole numbers within their bounds only: another answer is a fault of the step that asked.
int32_t ScriptHost::AskForNumber(const char* operation, const QJsonObject& arguments, double least,
                                 double most, double& number)
{
    const BridgeTalk::Answer answer = Ask(operation, arguments);
    if (answer.result != HOPBOX_OK)
        return answer.result;
    const double given = answer.value.isBool() ? answer.value.toBool() : answer.value.toDouble(-1);
    if (!(given >= least && given <= most) || given != static_cast<double>(static_cast<int64_t>(given)))
        return HOPBOX_FAILED;
    number = given;
    return HOPBOX_OK;
}

int32_t ScriptHost::AskForText(const char* operation, const QJsonObject& arguments, const hopbox_sink* sink)
{
    const BridgeTalk::Answer answer = Ask(operation, arguments);
    if (answer.result != HOPBOX_OK)
        return answer.result;
    if (!answer.value.isString())
        return HOPBOX_FAILED;
    PutText(sink, answer.value.toString());
    return HOPBOX_OK;
}

int32_t ScriptHost::AskForTexts(const char* operation, const QJsonObject& arguments, const hopbox_sink* sink)
{
    const BridgeTalk::Answer answer = Ask(operation, arguments);
    if (answer.result != HOPBOX_OK)
        return answer.result;
    if (!answer.value.isArray())
        return HOPBOX_FAILED;
    for (const QJsonValue& text : answer.value.toArray()) {
        if (!text.isString())
            return HOPBOX_FAILED;
        PutText(sink, text.toString());
    }
    return HOPBOX_OK;
}

int32_t ScriptHost::Run(ScriptCommand& command)
{
    static const char* const cOperations[] = {nullptr,       "export_document",  nullptr,
                                              "export_book", "package_document", "package_book"};
    if (command.kind == HOPBOX_PDF_PREFERENCES) {
        mBookPreset = command.preset.GetProperties();
        return HOPBOX_OK;
    }
    const bool isOfBook = command.kind == HOPBOX_EXPORT_BOOK || command.kind == HOPBOX_PACKAGE_BOOK;
    QJsonObject arguments{{isOfBook ? QStringLiteral("book") : QStringLiteral("document"),
                           static_cast<double>(command.source)}};
    arguments.insert(QStringLiteral("output"), command.output);
    if (command.kind == HOPBOX_EXPORT_DOCUMENT) {
        arguments.insert(QStringLiteral("preset"), command.preset.GetProperties());
        arguments.insert(QStringLiteral("pages"), command.pages);
    } else if (command.kind == HOPBOX_EXPORT_BOOK) {
        arguments.insert(QStringLiteral("preset"), mBookPreset);
    } else {
        QJsonArray settings;
        for (const bool isOn : command.packageSettings)
            settings.append(isOn);
        arguments.insert(QStringLiteral("settings"), settings);
    }
    const int32_t result = Ask(cOperations[command.kind], arguments, true).result;
    if (result == HOPBOX_CANCELLED)
        Remove(command.output);
    return result;
}
