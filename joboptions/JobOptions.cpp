#include "joboptions/JobOptions.h"

#include "foundation/core/SharedFile.h"
#include "joboptions/PostScriptReader.h"

GResult JobOptions::Parse(const QByteArray& text)
{
    mParameters.clear();
    mDeviceSettings.clear();
    PostScriptReader reader(text);
    std::vector<PostScriptValue> operands;
    PostScriptReader::Token token = reader.Next();
    for (; token == PostScriptReader::Token::Value || token == PostScriptReader::Token::Operator;
         token = reader.Next()) {
        if (token == PostScriptReader::Token::Value) {
            operands.push_back(reader.GetValue());
            continue;
        }
        const GResult executed = Execute(reader.GetOperator(), operands);
        if (!executed.HasSucceeded())
            reader.Fail(executed.GetReason());
    }
    if (!reader.GetError().isEmpty())
        return GResult::Failure(reader.GetError());
    if (!operands.empty())
        return GResult::Failure(QStringLiteral("at the end: a value that nothing takes"));
    if (mParameters.empty())
        return GResult::Failure(
            QStringLiteral("at the end: no \"setdistillerparams\", so it names no settings"));
    return GResult::Success();
}

GResult JobOptions::Execute(const QByteArray& name, std::vector<PostScriptValue>& operands)
{
    const bool isParameters = name == "setdistillerparams";
    const QString shown = QString::fromLatin1(name);
    if (!isParameters && name != "setpagedevice")
        return GResult::Failure(QStringLiteral("\"%1\" is nothing that job options hold").arg(shown));
    if (operands.empty() || !operands.back().Is(PostScriptValue::Type::Dictionary))
        return GResult::Failure(QStringLiteral("\"%1\" without a dictionary before it").arg(shown));
    (isParameters ? mParameters : mDeviceSettings).push_back(std::move(operands.back()));
    operands.pop_back();
    return GResult::Success();
}

GResult JobOptions::Read(const QString& path)
{
    QByteArray text;
    return ReadSharedFile(path, cMostBytes, &text).Then([&] { return Parse(text); });
}

const PostScriptValue* JobOptions::Find(const std::vector<PostScriptValue>& dictionaries, const char* key)
{
    for (auto dictionary = dictionaries.rbegin(); dictionary != dictionaries.rend(); ++dictionary) {
        if (const PostScriptValue* value = dictionary->Find(key))
            return value;
    }
    return nullptr;
}

const PostScriptValue* JobOptions::FindLayoutSetting(const char* key) const
{
    const PostScriptValue* namespaces = FindParameter("OtherNamespaces");
    return namespaces == nullptr ? nullptr : Find(namespaces->GetItems(), key);
}
