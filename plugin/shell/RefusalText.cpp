#include "plugin/shell/RefusalText.h"

#include "foundation/startup/GBasicFrameworkCoreLayer.h"
#include "plugin/host/HostFault.h"
#include "plugin/shell/PlugInFolders.h"
#include "plugin/shell/ShellServices.h"
#include "widgets/GCUSTranslation.h"

#include <QTranslator>

GString RefusalText::Translate(const char* context, const char* text)
{
    // Without the foundation there are no settings, which may name another language than the system's.
    if (GBasicFrameworkCoreLayer::IsInitialized())
        return GCUSTranslation::Translate(context, text);
    GString translation;
    HostFault::Contain("RefusalText", [&] {
        const ShellServices::Foundation foundation;
        QTranslator translator;
        if (translator.load(PlugInFolders::FindTranslation().GetNativePath()))
            translation = translator.translate(context, text);
    });
    return translation.isEmpty() ? GString::fromUtf8(text) : translation;
}
