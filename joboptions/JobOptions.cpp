#include "joboptions/JobOptions.h"

#include "foundation/core/SharedFile.h"
#include "joboptions/PostScriptReader.h"

bool JobOptions::Parse(const QByteArray& text, QString& error)
{
    mParameters.clear();
    mDeviceSettings.clear();
    PostScriptReader reader(text);
    std::vector<PostScriptValue> operands;
    PostScriptReader::Token token = reader.Next();
    for (; token == PostScriptReader::Token::Value || token == PostScriptReader::Token::Operator;
         token = reader.Next()) {
        if (token == PostScriptReader::Token::Value)
            operands.push_back(reader.GetValue());
        else if (!Execute(reader.GetOperator(), operands, error))
            reader.Fail(error);
    }
    error = reader.GetError();
    if (error.isEmpty() && !operands.empty())
        error = QStringLiteral("at the end: a value that nothing takes");
    if (error.isEmpty() && mParameters.empty())
        error = QStringLiteral("at the end: no \"setdistillerparams\", so it names no settings");
    return error.isEmpty();
}

bool JobOptions::Execute(const QByteArray& name, std::vector<PostScriptValue>& operands, QString& error)
{
    const bool isParameters = name == "setdistillerparams";
    if (!isParameters && name != "setpagedevice") {
        error = QStringLiteral("\"%1\" is nothing that job options hold").arg(QString::fromLatin1(name));
        return false;
    }
    if (operands.empty() || !operands.back().Is(PostScriptValue::Type::Dictionary)) {
        error = QStringLiteral("\"%1\" without a dictionary before it").arg(QString::fromLatin1(name));
        return false;
    }
    (isParameters ? mParameters : mDeviceSettings).push_back(std::move(operands.back()));
    operands.pop_back();
    return true;
}

bool JobOptions::Read(const QString& path, QString& error)
{
    QByteArray text;
    return ReadSharedFile(path, cMostBytes, &text, error) && Parse(text, error);
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
