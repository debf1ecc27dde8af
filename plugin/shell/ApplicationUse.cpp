#include "plugin/shell/ApplicationUse.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "plugin/shell/WindowSystem.h"

#include <QApplication>

namespace
{
[[noreturn]] void RaiseNoWindows(const GString& reason)
{
    throw GCustomException(GErrorCode::cIllegalArgument,
                           QStringLiteral("The plug-in can't show its windows: %1").arg(reason));
}

std::unique_ptr<QApplication> MakeApplication()
{
    // Qt keeps references to both for as long as the application lives.
    static char name[] = "Export to Hopbox";
    static char* arguments[] = {name, nullptr};
    static int argumentCount = 1;

    auto application = std::make_unique<QApplication>(argumentCount, arguments);
    // The process is the host's: it doesn't end with the last window of ours.
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}
}  // namespace

ApplicationUse::ApplicationUse()
{
    QCoreApplication* existing = QCoreApplication::instance();
    if (existing == nullptr) {
        // Qt's own plug-ins lie beside the module, not beside a host that is no Qt program.
        QCoreApplication::addLibraryPath(GFileSystemBase::GetDllPath().GetParent().GetPortablePath());
        if (const GString fault = WindowSystem::FindFault(); !fault.isEmpty())
            RaiseNoWindows(fault);
        mOwn = MakeApplication();
    } else if (qobject_cast<QApplication*>(existing) == nullptr) {
        RaiseNoWindows(QStringLiteral("the host is a Qt program without windows."));
    }
}

ApplicationUse::~ApplicationUse() = default;
