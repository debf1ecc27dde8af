#include "apps/hopboxctl/ProjectPlace.h"

#include "foundation/core/GException.h"
#include "foundation/core/SharedFile.h"
#include "foundation/files/FileSystem.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxMessages.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QFileInfo>

namespace
{
const QString cArchiveName = QStringLiteral("Project.hopbox");
const QString cOwnerName = QStringLiteral("Project.making");
constexpr int cMostAttempts = 20;

// One that is not empty, or can't be removed, stays.
void RemoveEmptyFolder(const GPathName& path)
{
    QDir().rmdir(path.GetNativePath());
}

std::vector<GPathName> FindMissing(const GPathName& folder)
{
    std::vector<GPathName> missing;
    for (GPathName path = folder; !path.IsEmpty() && !QFileInfo::exists(path.GetNativePath());
         path = path.GetParent())
        missing.push_back(path);
    return missing;
}

// All but the owner's file. False when something stays.
[[nodiscard]] bool RemoveContent(const GPathName& folder)
{
    QStringList names;
    bool isGone = !Morvane::FileSystem::listFolder(folder.GetPortablePath(), &names);
    for (const QString& name : names) {
        const GPathName path = folder.GetChild(name);
        if (name != cOwnerName && !GFileSystemBase::TryToRemoveFile(path))
            isGone = GFileSystemBase::TryToRemoveFolder(path) && isGone;
    }
    return isGone;
}

// Removes what a killed maker left in a folder. One that the registry names was finished all the same; of a
// registry that is damaged nobody knows what it named, and one that can't be read raises. It is read only now
// that the maker is dead: what it still registered is there.
void RemoveLeft(const GPathName& folder, const GPathName& owner)
{
    const HopboxRegistry registry;
    GString actorName;
    HopboxRegistryEntry entry;
    const bool isUsed = registry.FindByContextFile(folder.GetChild(cArchiveName), actorName, entry);
    if (registry.GetDamage())
        return;
    GOwnedFile::RemoveUnowned(owner, [&] { return isUsed || RemoveContent(folder); });
}

void RemoveLeftovers()
{
    const GPathName settings = HopboxRegistry::GetSettingsFolder();
    for (const QString& name :
         QDir(settings.GetNativePath()).entryList(QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot)) {
        const GPathName folder = settings.GetChild(name);
        const GPathName owner = folder.GetChild(cOwnerName);
        if (QFileInfo::exists(owner.GetNativePath()) && !GOwnedFile::IsOwned(owner))
            RemoveLeft(folder, owner);
        RemoveEmptyFolder(folder);
    }
}
}  // namespace

GPathName ProjectPlace::GetDefaultApplication()
{
    return HopboxRegistry::GetCacheFolder()
        .GetChild(QString::number(cBuild))
        .GetChild(HopboxMessage::cProcessImage);
}

GPathName ProjectPlace::GetArchivePath(const GPathName& folder)
{
    return folder.GetChild(cArchiveName);
}

bool ProjectPlace::IsOurs(const GPathName& archive)
{
    return archive.GetLeaf() == cArchiveName &&
           archive.GetParent().GetParent() == HopboxRegistry::GetSettingsFolder();
}

bool ProjectPlace::IsOfAnotherUser(const GPathName& archive)
{
    const GPathName settings = archive.GetParent().GetParent();
    return archive.GetLeaf() == cArchiveName && settings != HopboxRegistry::GetSettingsFolder() &&
           settings.GetPortablePath().endsWith(QLatin1String("/Morvane/Hopbox/Cache/Settings"));
}

bool ProjectPlace::Remove(const GPathName& archive)
{
    if (!GFileSystemBase::TryToRemoveFile(archive))
        return false;
    static const QStringList cIcons = {QStringLiteral("Icon"), QStringLiteral("Icon.*")};
    const GPathName folder = archive.GetParent();
    QStringList names;
    bool isGone = !Morvane::FileSystem::listFolder(folder.GetPortablePath(), &names);
    for (const QString& name : names) {
        const GPathName path = folder.GetChild(name);
        if (QDir::match(cIcons, name) && !QFileInfo(path.GetNativePath()).isDir())
            isGone = GFileSystemBase::TryToRemoveFile(path) && isGone;
    }
    RemoveEmptyFolder(folder);
    return isGone;
}

ProjectPlace::NewFolder::NewFolder(const QString& hopboxName)
    : mMissing(FindMissing(HopboxRegistry::GetSettingsFolder()))
{
    GFileSystemBase::CreateFolder(HopboxRegistry::GetSettingsFolder());
    RemoveLeftovers();
    MakeOwned(HopboxFolder::MakeName(hopboxName));
}

// Another maker that clears up may take the folder while it is still empty: then it is made anew.
void ProjectPlace::NewFolder::MakeOwned(const GString& name)
{
    for (int attempt = 1; mOwner == nullptr; ++attempt) {
        mPath = HopboxFolder::MakeFresh(HopboxRegistry::GetSettingsFolder(), name);
        try {
            mOwner = std::make_unique<GOwnedFile>([this] { return mPath.GetChild(cOwnerName); });
        } catch (const GException&) {
            const bool isGone = IsFileMissing(mPath.GetNativePath());
            RemoveEmptyFolder(mPath);
            if (!isGone || attempt == cMostAttempts)
                throw;
        }
    }
}

void ProjectPlace::NewFolder::Keep()
{
    mOwner.reset();
}

ProjectPlace::NewFolder::~NewFolder()
{
    if (mOwner == nullptr)
        return;
    if (!RemoveContent(mPath))
        mOwner->Disown();  // by this file the next maker finds what stays
    mOwner.reset();
    RemoveEmptyFolder(mPath);
    for (const GPathName& path : mMissing)
        RemoveEmptyFolder(path);
}

GPathName ProjectPlace::NewFolder::GetArchivePath() const
{
    return ProjectPlace::GetArchivePath(mPath);
}
