#include "plugin/shell/ApplicationUse.h"

#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/system/GFileSystemBase.h"
#include "plugin/shell/RefusalText.h"
#include "plugin/shell/WindowSystem.h"

#include <QApplication>

using RefusalText::Translate;

namespace
{
[[noreturn]] void RaiseNoWindows(const GString& reason)
{
    throw GCustomException(GErrorCode::cIllegalArgument,
                           Translate("RefusalText", "The plug-in can't show its windows: %1").arg(reason));
}

// How many modules use an application that one of them has made. A host's own has no such property.
constexpr const char* cUses = "HopboxPlugInUses";

int GetUses()
{
    return qApp->property(cUses).toInt();
}

void MakeApplication()
{
    // Qt keeps references to both for as long as the application lives.
    static char name[] = "Export to Hopbox";
    static char* arguments[] = {name, nullptr};
    static int argumentCount = 1;

    auto* const application = new QApplication(argumentCount, arguments);
    application->setProperty(cUses, 1);
    // The process is the host's: it doesn't end with the last window of ours.
    QApplication::setQuitOnLastWindowClosed(false);
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
        MakeApplication();
    } else if (qobject_cast<QApplication*>(existing) == nullptr) {
        RaiseNoWindows(Translate("RefusalText", "the host is a Qt program without windows."));
    } else if (GetUses() > 0) {
        existing->setProperty(cUses, GetUses() + 1);
    }
}

ApplicationUse::~ApplicationUse()
{
    const int uses = qApp == nullptr ? 0 : GetUses();
    if (uses == 1)
        delete qApp;
    else if (uses > 1)
        qApp->setProperty(cUses, uses - 1);
}
