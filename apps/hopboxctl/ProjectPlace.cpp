#include "apps/hopboxctl/ProjectPlace.h"

#include "foundation/system/GFileSystemBase.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxMessages.h"
#include "hopbox/HopboxRegistry.h"

#include <QDir>
#include <QFileInfo>

namespace
{
const QString cArchiveName = QStringLiteral("Project.hopbox");

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
    const QDir folder(archive.GetParent().GetNativePath());
    for (const QString& icon :
         folder.entryList({QStringLiteral("Icon"), QStringLiteral("Icon.*")}, QDir::Files))
        GFileSystemBase::TryToRemoveFile(archive.GetParent().GetChild(icon));
    RemoveEmptyFolder(archive.GetParent());
    return true;
}

ProjectPlace::NewFolder::NewFolder(const QString& hopboxName)
    : mMissing(FindMissing(HopboxRegistry::GetSettingsFolder()))
{
    GFileSystemBase::CreateFolder(HopboxRegistry::GetSettingsFolder());
    mPath = HopboxFolder::MakeFresh(HopboxRegistry::GetSettingsFolder(), HopboxFolder::MakeName(hopboxName));
}

ProjectPlace::NewFolder::~NewFolder()
{
    if (mIsKept)
        return;
    GFileSystemBase::TryToRemoveFolder(mPath);
    for (const GPathName& path : mMissing)
        RemoveEmptyFolder(path);
}

GPathName ProjectPlace::NewFolder::GetArchivePath() const
{
    return ProjectPlace::GetArchivePath(mPath);
}
