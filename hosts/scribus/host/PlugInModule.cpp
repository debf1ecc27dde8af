#include "hosts/scribus/host/PlugInModule.h"

#include "plugin/boundary/ModulePlugIn.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

PlugInModule::PlugInModule() = default;

PlugInModule::~PlugInModule()
{
    if (!mHasServices)
        return;
    if (mActions != nullptr)
        mPlugIn->GetStartupShutdownService()->Shutdown();
    if (!mPlugIn->Unload())
        static_cast<void>(
            mPlugIn.release());  // a module in use keeps its host's table until the process ends
}

QString PlugInModule::FindFile()
{
    const QString named = qEnvironmentVariable("HOPBOX_PLUGIN");
    if (!named.isEmpty())
        return named;
    const QDir program(QCoreApplication::applicationDirPath());
    QString file;
    for (const char* place : {"HopboxPlugIn.so", "../plugin/HopboxPlugIn.so", INSTALLED_MODULE}) {
        file = QDir::cleanPath(program.filePath(QString::fromLatin1(place)));
        if (QFileInfo::exists(file))
            break;
    }
    return file;
}

bool PlugInModule::Load(const QString& file, IHostServices& services)
{
    mLibrary.setFileName(file);
    if (FindEntry() && GiveServices(services) && StartUp())
        return true;
    if (mHasServices)
        mHasServices = !mPlugIn->Unload();
    return false;
}

bool PlugInModule::FindEntry()
{
    if (!mLibrary.load())
        return Fail(mLibrary.errorString());
    const auto entry = reinterpret_cast<hopbox_entry_function>(mLibrary.resolve(HOPBOX_ENTRY_NAME));
    mPlugIn = std::make_unique<ModulePlugIn>(entry);
    return entry != nullptr || Fail(QCoreApplication::translate("PlugInModule", "it has no entry \"%1\".")
                                        .arg(QStringLiteral(HOPBOX_ENTRY_NAME)));
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
    mError = QCoreApplication::translate("PlugInModule", "The plug-in \"%1\" can't be used: %2")
                 .arg(mLibrary.fileName(), text);
    return false;
}
