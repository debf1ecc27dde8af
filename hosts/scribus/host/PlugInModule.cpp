#include "hosts/scribus/host/PlugInModule.h"

#include "plugin/host/IHostServices.h"
#include "plugin/host/IPlugIn.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

PlugInModule::~PlugInModule()
{
    if (!mHasServices)
        return;
    if (mActions != nullptr)
        mPlugIn->GetStartupShutdownService()->Shutdown();
    mPlugIn->Unload();
}

QString PlugInModule::FindFile()
{
    const QString named = qEnvironmentVariable("HOPBOX_PLUGIN");
    if (!named.isEmpty())
        return named;
    const QString fileName = QStringLiteral("HopboxPlugIn.so");
    const QDir program(QCoreApplication::applicationDirPath());
    const QString beside = program.filePath(fileName);
    return QFileInfo::exists(beside)
               ? beside
               : QDir::cleanPath(program.filePath(QStringLiteral("../plugin/") + fileName));
}

bool PlugInModule::Load(const QString& file, IHostServices& services)
{
    mLibrary.setFileName(file);
    return FindEntry() && CheckVersion() && GiveServices(services) && StartUp();
}

bool PlugInModule::FindEntry()
{
    const auto getPlugIn = reinterpret_cast<GetPlugInFunction>(mLibrary.resolve(cGetPlugInName));
    if (getPlugIn == nullptr)
        return Fail(mLibrary.errorString());
    mPlugIn = getPlugIn();
    return mPlugIn != nullptr || Fail(QStringLiteral("its entry gives nothing"));
}

// With another version no other function may be called: its classes have another layout.
bool PlugInModule::CheckVersion()
{
    const int32_t version = mPlugIn->GetInterfaceVersion();
    return version == IHostServices::cVersion ||
           Fail(QStringLiteral("it was built for version %1 of the host interface, and this is version %2")
                    .arg(version)
                    .arg(IHostServices::cVersion));
}

bool PlugInModule::GiveServices(IHostServices& services)
{
    PMString reason;
    mHasServices = mPlugIn->Load(&services, reason);
    return mHasServices || Fail(reason.GetString());
}

bool PlugInModule::StartUp()
{
    PMString reason;
    mActions = mPlugIn->CreateActionComponent(reason);
    if (mActions == nullptr)
        return Fail(reason.GetString());
    mPlugIn->GetStartupShutdownService()->Startup();
    return true;
}

bool PlugInModule::Fail(const QString& text)
{
    mError = QStringLiteral("The plug-in \"%1\" can't be used: %2").arg(mLibrary.fileName(), text);
    return false;
}
