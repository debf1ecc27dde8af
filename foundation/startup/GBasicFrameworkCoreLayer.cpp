#include "foundation/startup/GBasicFrameworkCoreLayer.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GMessageLoop.h"
#include "foundation/core/GUseCount.h"
#include "foundation/prefs/GMorvaneGeneralPrefs.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/startup/FoundationMessages.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/trace/FileLogger.h"
#include "foundation/trace/GTrace.h"
#include "foundation/trace/QtLogger.h"

#include <QCoreApplication>
#include <QLocale>

namespace
{
const GBuffer cPrefIDLogToFile = QByteArrayLiteral("LogToFile");

GUseCount uses;

// The logger that this layer installed; null when somebody else's serves.
std::shared_ptr<Morvane::ILogInterface> ownLogger;

bool IsOwnLoggerInstalled()
{
    return ownLogger != nullptr && GTrace::GetLogger() == ownLogger;
}

void InstallLogger(std::shared_ptr<Morvane::ILogInterface> logger)
{
    ownLogger = std::move(logger);
    GTrace::SetLogger(ownLogger);
}

void BringUp()
{
    if (GTrace::GetLogger() == nullptr)
        InstallLogger(std::make_shared<Morvane::QtLogger>());
    if (QCoreApplication::instance() != nullptr)
        GMessageLoop::Start();
    GPreferences::Initialize();
    GBasicFrameworkCoreLayer::InitializeStrings();
}

void FinalizePreferences() noexcept
{
    try {
        GPreferences::Finalize();
    } catch (const std::exception& error) {
        GTrace::Error(QStringLiteral("GBasicFrameworkCoreLayer::Release"),
                      QStringLiteral("Settings are lost: %1").arg(GString::fromUtf8(error.what())));
    }
}

// Undoes what BringUp did, however far it came.
void TakeDown() noexcept
{
    GStringPool::Finalize();
    FinalizePreferences();
    GMessageLoop::Stop();
    if (IsOwnLoggerInstalled())
        GTrace::SetLogger(nullptr);
    ownLogger.reset();
}

void LogToFile()
{
    const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences);
    const GString path = folder.GetChild(QStringLiteral("Morvane.log")).GetNativePath();
    auto logger = std::make_shared<Morvane::FileLogger>(path);
    if (!logger->isOpen())
        throw GCustomException(GErrorCode::cFile, QStringLiteral("%1 can't be opened.").arg(path));
    InstallLogger(std::move(logger));
}
}  // namespace

void GBasicFrameworkCoreLayer::Initialize()
{
    uses.Add(BringUp, TakeDown);
}

void GBasicFrameworkCoreLayer::Release() noexcept
{
    if (!uses.Remove(TakeDown))
        GTrace::Assert(QStringLiteral("GBasicFrameworkCoreLayer::Release"),
                       QStringLiteral("Released more often than initialised."));
}

bool GBasicFrameworkCoreLayer::IsInitialized()
{
    return uses.IsUsed();
}

void GBasicFrameworkCoreLayer::InitializeStrings()
{
    GStringPool::Initialize();
    RegisterFoundationMessages();
}

void GBasicFrameworkCoreLayer::ApplySettings()
{
    static_cast<void>(GStringPool::SetLanguage(GetLanguage()));  // English where it has no texts
    const bool isWanted = GPreferences::GetBool(GMorvaneGeneralPrefs::cGroupIDGeneralPrefs, cPrefIDLogToFile);
    if (!isWanted || !IsOwnLoggerInstalled())
        return;
    try {
        LogToFile();
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GBasicFrameworkCoreLayer::ApplySettings"), error.GetDescription());
    }
}

GString GBasicFrameworkCoreLayer::GetLanguage()
{
    const GString language =
        GPreferences::Get(GMorvaneGeneralPrefs::cGroupIDGeneralPrefs, GMorvaneGeneralPrefs::cPrefIDLanguage);
    return language.isEmpty() ? GetLanguageOf(QLocale::system()) : language;
}

GString GBasicFrameworkCoreLayer::GetLanguageOf(const QLocale& locale)
{
    if (locale.language() == QLocale::C)
        return GStringPool::cEnglish;
    const GString own = locale.name().remove(QLatin1Char('_'));
    if (GStringPool::HasLanguage(own))
        return own;
    const QLocale main(locale.language(), locale.script(), QLocale::AnyCountry);
    return main.name().remove(QLatin1Char('_'));
}
