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

GResult PlugInModule::Load(const QString& file, IHostServices& services)
{
    mLibrary.setFileName(file);
    const GResult loaded =
        FindEntry().Then([&] { return GiveServices(services); }).Then([&] { return StartUp(); });
    if (loaded.HasSucceeded())
        return loaded;
    if (mHasServices)
        mHasServices = !mPlugIn->Unload();
    return GResult::Failure(
        QCoreApplication::translate("PlugInModule", "The plug-in \"%1\" can't be used: %2")
            .arg(mLibrary.fileName(), loaded.GetReason()));
}

GResult PlugInModule::FindEntry()
{
    if (!mLibrary.load())
        return GResult::Failure(mLibrary.errorString());
    const auto entry = reinterpret_cast<hopbox_entry_function>(mLibrary.resolve(HOPBOX_ENTRY_NAME));
    mPlugIn = std::make_unique<ModulePlugIn>(entry);
    return entry != nullptr
               ? GResult::Success()
               : GResult::Failure(QCoreApplication::translate("PlugInModule", "it has no entry \"%1\".")
                                      .arg(QStringLiteral(HOPBOX_ENTRY_NAME)));
}

GResult PlugInModule::GiveServices(IHostServices& services)
{
    PMString reason;
    mHasServices = mPlugIn->Load(&services, reason);
    return mHasServices ? GResult::Success() : GResult::Failure(reason.GetString());
}

GResult PlugInModule::StartUp()
{
    PMString reason;
    mActions = mPlugIn->CreateActionComponent(reason);
    if (mActions == nullptr)
        return GResult::Failure(reason.GetString());
    mPlugIn->GetStartupShutdownService()->Startup();
    return GResult::Success();
}
