#include "apps/hopboxctl/Command.h"

#include "apps/hopboxctl/Program.h"
#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliMain.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace
{
struct Answer
{
    bool isJson = false;
    const CliCommand* command = nullptr;
    QJsonValue result;
    QJsonValue damaged;
    QJsonValue unread;
};

Answer& GetAnswer()
{
    static Answer answer;
    return answer;
}
}  // namespace

void Print(const QString& text)
{
    if (!GetAnswer().isJson)
        CliConsole::Print(text);
}

bool FlushOutput()
{
    return CliConsole::Finish();
}

void PrintError(const QString& line)
{
    CliConsole::PrintError(line);
}

void PrintWarning(const QString& line)
{
    CliConsole::PrintWarning(line);
}

void SetResult(const QJsonValue& result)
{
    GetAnswer().result = result;
}

void SetDamaged(const QJsonValue& damaged)
{
    GetAnswer().damaged = damaged;
}

void SetUnread(const QJsonValue& unread)
{
    GetAnswer().unread = unread;
}

int RefuseCall(const QString& error)
{
    return RefuseCli(Program::GetDescription(), GetAnswer().command, error);
}

bool SplitAssignment(const QString& text, QString& key, QString& value)
{
    const int at = text.indexOf(QLatin1Char('='));
    if (at <= 0)
        return false;
    key = text.left(at);
    value = text.mid(at + 1);
    return true;
}

void Program::BeginAnswer(const CliCall& call)
{
    GetAnswer().isJson = call.Has("json");
    GetAnswer().command = call.GetCommand();
}

int Program::FinishJson(int status)
{
    GetAnswer().isJson = true;
    return FinishAnswer(status);
}

int Program::FinishAnswer(int status)
{
    const Answer& answer = GetAnswer();
    if (answer.isJson) {
        QJsonObject object{
            {QStringLiteral("ok"), status == cCliDone},
            {QStringLiteral("result"), answer.result},
            {QStringLiteral("errors"), QJsonArray::fromStringList(CliConsole::GetErrors())},
            {QStringLiteral("warnings"), QJsonArray::fromStringList(CliConsole::GetWarnings())}};
        if (answer.damaged.isObject())
            object.insert(QStringLiteral("damaged"), answer.damaged);
        if (answer.unread.isObject())
            object.insert(QStringLiteral("unread"), answer.unread);
        CliConsole::Print(QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) +
                          QLatin1Char('\n'));
    }
    return CliConsole::Finish() ? status : cCliFailed;
}
