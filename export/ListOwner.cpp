#include "export/ListOwner.h"

#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GOwnedFile.h"
#include "foundation/system/GUniqueName.h"
#include "foundation/trace/GTrace.h"

#include <QDir>
#include <QRegularExpression>

#include <map>
#include <memory>

namespace
{
constexpr int cRandomLength = 12;

// This process's files, by the path of their settings. Whoever ends in order has cleaned up; the rest goes
// with the process, and its file with the next clean-up.
std::map<GString, std::unique_ptr<GOwnedFile>>& GetOwnFiles()
{
    static auto* const files = new std::map<GString, std::unique_ptr<GOwnedFile>>;
    return *files;
}

GPathName MakePath(const GPathName& settings)
{
    return GPathName(settings.GetPortablePath() + QLatin1Char('.') + MakeRandomName(cRandomLength) +
                     QStringLiteral(".owner"));
}

bool IsOwnerName(const GPathName& settings, const GString& name)
{
    static const QRegularExpression suffix(QStringLiteral("^\\.[0-9a-z]{12}\\.owner$"));
    const GString leaf = settings.GetLeaf();
    return name.startsWith(leaf) && suffix.match(name.mid(leaf.size())).hasMatch();
}
}  // namespace

GString ListOwner::GetOwnName(const GPathName& settings)
{
    std::unique_ptr<GOwnedFile>& file = GetOwnFiles()[settings.GetPortablePath()];
    try {
        // Whoever lost it for a failing look would leave what it listed before to anybody.
        if (file == nullptr || IsFileMissing(file->GetPathName().GetNativePath()))
            file = std::make_unique<GOwnedFile>([&] { return MakePath(settings); });
        return file->GetPathName().GetLeaf();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("ListOwner::GetOwnName"), error.GetDescription());
        return GString();
    }
}

bool ListOwner::IsInOtherHands(const GPathName& settings, const GString& name)
{
    const auto own = GetOwnFiles().find(settings.GetPortablePath());
    const bool isOwn =
        own != GetOwnFiles().end() && own->second != nullptr && own->second->GetPathName().GetLeaf() == name;
    return !isOwn && IsOwnerName(settings, name) && GOwnedFile::IsOwned(settings.GetParent().GetChild(name));
}

void ListOwner::CleanUp(const GPathName& settings)
{
    GetOwnFiles().erase(settings.GetPortablePath());
    const GPathName folder = settings.GetParent();
    const QStringList wildcard = {QStringLiteral("*.owner")};
    for (const GString& name : QDir(folder.GetNativePath()).entryList(wildcard, QDir::Files | QDir::Hidden)) {
        if (IsOwnerName(settings, name))
            GOwnedFile::RemoveUnowned(folder.GetChild(name));
    }
}
