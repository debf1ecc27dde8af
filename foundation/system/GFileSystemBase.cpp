#include "foundation/system/GFileSystemBase.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GSystemFolders.h"
#include "foundation/system/GUniqueName.h"
#include "foundation/trace/GTrace.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <map>
#include <mutex>

namespace
{
constexpr int cRandomLength = 5;
constexpr int cMostNames = 1000;              // that are tried before a folder counts as unusable
constexpr unsigned long cRemovalPause = 100;  // milliseconds

struct Registry
{
    std::mutex mutex;
    std::map<int32_t, GPathName> paths;
};

Registry& GetRegistry()
{
    static Registry registry;
    return registry;
}

GPathName GetRegisteredPath(int32_t number)
{
    Registry& registry = GetRegistry();
    const std::lock_guard<std::mutex> guard(registry.mutex);
    const auto found = registry.paths.find(number);
    return found == registry.paths.end() ? GPathName() : found->second;
}

GPathName GetApplicationData(const GPathName& root)
{
    return root.IsEmpty() ? GSystemFolders::GetApplicationData() : root.GetChild(QStringLiteral("AppData"));
}

GString GetPreferencesLeaf()
{
    return QStringLiteral("Morvane Prefs Folder");
}

// Whoever uses the folder finds out, with a reason of its own, when it could not be made.
GPathName MakeWhenMissing(const GPathName& folder)
{
    try {
        GFileSystemBase::CreateFolder(folder);
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GFileSystemBase::GetSpecialPath"), error.GetDescription());
    }
    return folder;
}

GPathName GetTemporaryFolder(const GPathName& root)
{
    return root.IsEmpty() ? GPathName(QDir::tempPath())
                          : MakeWhenMissing(root.GetChild(QStringLiteral("Temp")));
}

// All users' folder is the administrator's to make: made here, it would be for this user only.
GPathName GetGlobalPreferences(const GPathName& root)
{
    if (root.IsEmpty())
        return GSystemFolders::GetCommonApplicationData().GetChild(GetPreferencesLeaf());
    return MakeWhenMissing(root.GetChild(QStringLiteral("CommonAppData")).GetChild(GetPreferencesLeaf()));
}

bool IsVisiblyTaken(const GPathName& path)
{
    const QFileInfo file(path.GetNativePath());
    return file.exists() || file.isSymLink();
}

// Tries names until one can be made. `make` gives false when it failed, with the reason to be read.
template <typename NextName, typename Make>
GPathName MakeUnique(const GPathName& folder, const GFileSystemBase::Announce& announce, NextName nextName,
                     Make make)
{
    boost::system::error_code reason = boost::system::errc::make_error_code(boost::system::errc::file_exists);
    for (int attempt = 0; attempt < cMostNames; ++attempt) {
        const GPathName path = folder.GetChild(nextName(attempt));
        if (announce) {
            if (IsVisiblyTaken(path))
                continue;
            announce(path);
        }
        if (make(path))
            return path;
        reason = GetLastSystemError();
        // Windows also says "access denied" for a name whose file is just being deleted.
        if (!GFileCalls::IsNameTaken(reason.value()) && !QFileInfo::exists(path.GetNativePath()))
            break;
    }
    RaiseFileError(QStringLiteral("Nothing can be created in the folder \"%1\""), folder, reason);
}
}  // namespace

GPathName GFileSystemBase::GetSpecialPath(int32_t number)
{
    const GPathName registered = GetRegisteredPath(number);
    if (!registered.IsEmpty())
        return registered;
    switch (number) {
        case GSpecialPath::cTemporary:
            return GetTemporaryFolder(GetRoot());
        case GSpecialPath::cHostSettingsParent:
            return GetApplicationData(GetRoot());
        case GSpecialPath::cGlobalPreferences:
            return GetGlobalPreferences(GetRoot());
        case GSpecialPath::cUserPreferences:
            return MakeWhenMissing(GetApplicationData(GetRoot()).GetChild(GetPreferencesLeaf()));
        case GSpecialPath::cHopboxCacheRoot:
            return GetApplicationData(GetRoot()).GetChild(QStringLiteral("Morvane"));
        default:
            return GPathName();
    }
}

void GFileSystemBase::RegisterSpecialPath(int32_t number, const GPathName& path)
{
    Registry& registry = GetRegistry();
    const std::lock_guard<std::mutex> guard(registry.mutex);
    if (path.IsEmpty())
        registry.paths.erase(number);
    else
        registry.paths[number] = path;
}

GPathName GFileSystemBase::GetRoot()
{
    const GPathName root(GSystemFolders::GetEnvironmentText("MORVANE_ROOT"));
    if (!root.IsEmpty() && !root.IsAbsolute()) {
        throw GCustomException(GErrorCode::cIllegalPath,
                               QStringLiteral("MORVANE_ROOT names \"%1\", which is not an absolute path.")
                                   .arg(root.GetNativePath()));
    }
    return root;
}

GString GFileSystemBase::GetRootMark()
{
    constexpr int cLength = 8;
    const GPathName root = GetRoot();
    if (root.IsEmpty())
        return GString();
    const QByteArray path = root.GetPortablePath().toLower().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex();
    return QLatin1Char('_') + QString::fromLatin1(digest.left(cLength));
}

GPathName GFileSystemBase::GetDllPath()
{
    return GSystemFolders::GetModuleFile();
}

void GFileSystemBase::CreateFolder(const GPathName& path)
{
    if (QFileInfo(path.GetNativePath()).isDir() || GSystemFolders::MakeFolder(path))
        return;
    boost::system::error_code reason = GetLastSystemError();
    const GPathName parent = path.GetParent();
    if (!parent.IsEmpty() && !QFileInfo::exists(parent.GetNativePath())) {
        CreateFolder(parent);
        if (GSystemFolders::MakeFolder(path))
            return;
        reason = GetLastSystemError();
    }
    // Another process may have been quicker.
    if (!QFileInfo(path.GetNativePath()).isDir())
        RaiseFileError(QStringLiteral("The folder \"%1\" can't be created"), path, reason);
}

GPathName GFileSystemBase::CreateUniqueFile(const GPathName& folder, const GString& wantedName,
                                            const Announce& announce)
{
    const GPathName wanted(wantedName);
    const auto nextName = [&](int attempt) {
        if (attempt == 0)
            return wantedName;
        const GString stem =
            wanted.GetLeafWithoutExtension() + QLatin1Char('_') + MakeRandomName(cRandomLength);
        return wanted.GetExtension().isEmpty() ? stem : stem + QLatin1Char('.') + wanted.GetExtension();
    };
    if (wanted.GetLeaf() != wantedName)
        throw GCustomException(GErrorCode::cIllegalPath,
                               QStringLiteral("\"%1\" is not a file name.").arg(wantedName));
    return MakeUnique(folder, announce, nextName,
                      [](const GPathName& path) { return GFileCalls::CreateNewFile(path).IsOpen(); });
}

GPathName GFileSystemBase::CreateUniqueFolder(const GPathName& parent, const GString& nameTemplate,
                                              const Announce& announce)
{
    const auto nextName = [&](int) {
        GString name = nameTemplate;
        const GString random = MakeRandomName(name.size());
        for (int i = 0; i < name.size(); ++i) {
            if (name.at(i) == QLatin1Char('X'))
                name[i] = random.at(i);
        }
        return name;
    };
    return MakeUnique(parent, announce, nextName, GSystemFolders::MakeFolder);
}

bool GFileSystemBase::TryToRemoveFile(const GPathName& path) noexcept
{
    try {
        return !path.IsEmpty() && GFileCalls::RemoveFile(path, true);
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GFileSystemBase::TryToRemoveFile"), QString::fromUtf8(error.what()));
        return false;
    }
}

bool GFileSystemBase::TryToRemoveFolder(const GPathName& path, int32_t readOnlyContent,
                                        int32_t attempts) noexcept
{
    if (path.IsEmpty() || path.IsRoot())
        return false;
    try {
        for (int32_t attempt = 1; !GFileCalls::RemoveTree(path, readOnlyContent != 0); ++attempt) {
            if (attempt >= attempts || !QFileInfo(path.GetNativePath()).isDir())
                return false;
            QThread::msleep(cRemovalPause);
        }
        return true;
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GFileSystemBase::TryToRemoveFolder"), QString::fromUtf8(error.what()));
        return false;
    }
}
