#include "apps/hopboxctl/PrefsCommand.h"

#include "apps/hopboxctl/PrefsFile.h"
#include "apps/hopboxctl/PrefsOutput.h"

namespace
{
struct Call
{
    QString file;
    QStringList get;  // group and key; empty unless asked for
    QStringList set;  // group, key and value
    bool asJson = false;
    bool isShared = false;
};

// Takes the arguments behind an option as they are, whatever they look like.
bool TakeValues(const QStringList& arguments, int& at, int count, QStringList& values)
{
    const bool areThere = values.isEmpty() && at + count < arguments.size();
    values = arguments.mid(at + 1, count);
    at += count;
    return areThere;
}

bool ParseCall(const QStringList& arguments, Call& call)
{
    bool isValid = true;
    for (int at = 0; at < arguments.size() && isValid; ++at) {
        const QString& argument = arguments.at(at);
        if (argument == QLatin1String("--json"))
            call.asJson = true;
        else if (argument == QLatin1String("--shared"))
            call.isShared = true;
        else if (argument == QLatin1String("--get"))
            isValid = TakeValues(arguments, at, 2, call.get);
        else if (argument == QLatin1String("--set"))
            isValid = TakeValues(arguments, at, 3, call.set);
        else if (call.file.isEmpty() && !argument.startsWith(QLatin1String("--")))
            call.file = argument;
        else
            isValid = false;
    }
    const bool isPrint = call.get.isEmpty() && call.set.isEmpty();
    return isValid && !call.file.isEmpty() && (call.get.isEmpty() || call.set.isEmpty()) &&
           (isPrint || !call.asJson) && (!call.set.isEmpty() || !call.isShared);
}

int Get(const PrefsFile& file, const QString& group, const QString& key)
{
    const QString* const value = file.Find(group, key);
    if (value == nullptr) {
        PrintError(QStringLiteral("there is no '%2' in group '%1'").arg(group, key));
        return cExitFailed;
    }
    Print(*value + QLatin1Char('\n'));
    return cExitDone;
}

int Read(const Call& call)
{
    const PrefsFile file(call.file);
    int status = cExitDone;
    if (!call.get.isEmpty())
        status = Get(file, call.get.at(0), call.get.at(1));
    else
        Print(call.asJson ? PrefsOutput::GetJson(file.GetGroups()) : PrefsOutput::GetText(file.GetGroups()));
    if (!file.IsDamaged())
        return status;
    PrintError(file.DescribeDamage());
    return cExitFailed;
}

int RunPrefs(const QStringList& arguments)
{
    Call call;
    if (!ParseCall(arguments, call))
        return cExitUsage;
    if (call.set.isEmpty())
        return Read(call);
    PrefsFile::Set(call.file, call.set.at(0), call.set.at(1), call.set.at(2),
                   call.isShared ? PrefsFile::Access::cShared : PrefsFile::Access::cOwn);
    return cExitDone;
}
}  // namespace

const Command cPrefsCommand = {"prefs",
                               "prefs FILE [--json]\n"
                               "prefs FILE --get GROUP KEY\n"
                               "prefs FILE --set GROUP KEY VALUE [--shared]",
                               RunPrefs};
