#include "apps/hopboxctl/PrefsCommand.h"

#include "apps/hopboxctl/PrefsFile.h"
#include "apps/hopboxctl/PrefsOutput.h"

namespace
{
int Get(const PrefsFile& file, const QString& group, const QString& key)
{
    const QString* const value = file.Find(group, key);
    if (value == nullptr) {
        PrintError(QStringLiteral("There is no \"%2\" in the group \"%1\".").arg(group, key));
        return cCliFailed;
    }
    SetResult(*value);
    Print(*value + QLatin1Char('\n'));
    return cCliDone;
}

int Show(const PrefsFile& file)
{
    SetResult(PrefsOutput::GetJson(file.GetGroups()));
    Print(PrefsOutput::GetText(file.GetGroups()));
    return cCliDone;
}

int Read(const CliCall& call)
{
    const PrefsFile file(call.GetArgument(0));
    const QStringList wanted = call.GetAll("get");
    const int status = wanted.isEmpty() ? Show(file) : Get(file, wanted.at(0), wanted.at(1));
    if (!file.IsDamaged())
        return status;
    PrintError(file.DescribeDamage());
    SetDamaged(file.GetDamageJson());
    return cCliFailed;
}

int RunPrefs(const CliCall& call)
{
    const QStringList set = call.GetAll("set");
    if (call.Has("get") && call.Has("set"))
        return RefuseCall(QStringLiteral("\"--get\" and \"--set\" don't go together."));
    if (call.GetAll("get").size() > 2 || set.size() > 3)
        return RefuseCall(QStringLiteral("One \"--get\" or \"--set\" at a time."));
    if (call.Has("shared") && !call.Has("set"))
        return RefuseCall(QStringLiteral("\"--shared\" goes with \"--set\" only."));
    if (!call.Has("set"))
        return Read(call);
    PrefsFile::Set(call.GetArgument(0), set.at(0), set.at(1), set.at(2),
                   call.Has("shared") ? PrefsFile::Access::cShared : PrefsFile::Access::cOwn);
    return cCliDone;
}
}  // namespace

const Command cPrefsCommand = {
    {"prefs",
     "print or change a settings file",
     "It prints groups and keys in their order, with dictionaries and lists unfolded. A damaged file is "
     "printed as far "
     "as it can be read, and never changed.",
     {{"FILE", "the settings file"}},
     {{"get", "GROUP KEY", "print this value only"},
      {"set", "GROUP KEY VALUE", "set this value; the file is made where there is none"},
      {"shared", "", "change the file under its lock, as programs that share it do"}},
     {{"hopboxctl prefs General.uprefs --get General Language", "Prints the language that is set."}}},
    RunPrefs};
