#include "foundation/system/GSystemFolders.h"

#include "foundation/system/GSystemError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

GString GSystemFolders::GetEnvironmentText(const char* name)
{
    return QFile::decodeName(qgetenv(name));
}

GPathName GSystemFolders::GetApplicationData()
{
    // A relative path in the variable is to be ignored, says its definition.
    const GString configured = GetEnvironmentText("XDG_CONFIG_HOME");
    return configured.startsWith(QLatin1Char('/'))
               ? GPathName(configured)
               : GPathName(QDir::homePath()).GetChild(QStringLiteral(".config"));
}

GPathName GSystemFolders::GetCommonApplicationData()
{
    return GPathName(QStringLiteral("/etc/xdg"));
}

GPathName GSystemFolders::GetModuleFile()
{
    // Of any object in this module; the name in the link map is empty for the program itself.
    static const char cAnchor = 0;
    Dl_info information = {};
    struct link_map* map = nullptr;
    if (dladdr1(&cAnchor, &information, reinterpret_cast<void**>(&map), RTLD_DL_LINKMAP) == 0 ||
        map == nullptr)
        RaiseFileError(QStringLiteral("The module's file can't be found (%1)"), GPathName(),
                       GetLastSystemError());
    const GString name =
        map->l_name[0] != '\0' ? QFile::decodeName(map->l_name) : QStringLiteral("/proc/self/exe");
    const GString resolved = QFileInfo(name).canonicalFilePath();
    return GPathName(resolved.isEmpty() ? QFileInfo(name).absoluteFilePath() : resolved);
}

bool GSystemFolders::MakeFolder(const GPathName& path) noexcept
{
    return mkdir(QFile::encodeName(path.GetSystemPath()).constData(), 0700) == 0;
}
