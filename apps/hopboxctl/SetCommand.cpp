#include "apps/hopboxctl/Arguments.h"
#include "apps/hopboxctl/DamageNotice.h"
#include "apps/hopboxctl/HopboxCommands.h"
#include "apps/hopboxctl/HopboxOutput.h"
#include "foundation/core/GStringSupport.h"
#include "hopbox/HopboxRegistry.h"

#include <QVector>

#include <functional>

namespace
{
using Change = std::function<void(HopboxRegistryEntry&)>;

Change MakeChange(GPathName HopboxRegistryEntry::*field, const QString& value)
{
    const GPathName path(value);
    return [field, path](HopboxRegistryEntry& entry) { entry.*field = path; };
}

Change MakeChange(GString HopboxRegistryEntry::*field, const QString& value)
{
    return [field, value](HopboxRegistryEntry& entry) { entry.*field = value; };
}

// None when the text is no boolean.
Change MakeChange(bool HopboxRegistryEntry::*field, const QString& value)
{
    const bool flag = GStringSupport::ToBool(value);
    if (GStringSupport::FromBool(flag) != value)
        return {};
    return [field, flag](HopboxRegistryEntry& entry) { entry.*field = flag; };
}

// What FIELD=VALUE does; none when it makes no sense. Raises where a path is no legal one.
Change ParseChange(const QString& assignment)
{
    QString field;
    QString value;
    if (!SplitAssignment(assignment, field, value))
        return {};
    if (field == HopboxRecordKey::cApplicationPath)
        return MakeChange(&HopboxRegistryEntry::applicationPath, value);
    if (field == HopboxRecordKey::cContextFilePath)
        return MakeChange(&HopboxRegistryEntry::contextFilePath, value);
    if (field == HopboxRecordKey::cPDFSettings)
        return MakeChange(&HopboxRegistryEntry::pdfSettings, value);
    if (field == HopboxRecordKey::cHopboxName)
        return MakeChange(&HopboxRegistryEntry::hopboxName, value);
    if (field == HopboxRecordKey::cHopboxIconPath)
        return MakeChange(&HopboxRegistryEntry::hopboxIconPath, value);
    if (field == HopboxRecordKey::cIsVirtualPrinter)
        return MakeChange(&HopboxRegistryEntry::isVirtualPrinter, value);
    if (field == HopboxRecordKey::cIsPlugin)
        return MakeChange(&HopboxRegistryEntry::isPlugin, value);
    if (field == HopboxRecordKey::cIsActive)
        return MakeChange(&HopboxRegistryEntry::isActive, value);
    return {};
}

int Run(const QStringList& texts)
{
    const Arguments arguments(texts, {});
    if (!arguments.AreValid() || arguments.GetRest().size() < 2)
        return cExitUsage;
    QVector<Change> changes;
    for (const QString& assignment : arguments.GetRest().mid(1)) {
        changes.append(ParseChange(assignment));
        if (!changes.last())
            return cExitUsage;
    }
    const QString name = arguments.GetRest().first();
    HopboxRegistry registry;
    const bool isChanged = registry.ChangeEntry(name, [&](HopboxRegistryEntry& entry) {
        for (const Change& change : changes)
            change(entry);
    });
    DamageNotice::Tell(registry);
    if (isChanged)
        return cExitDone;
    QString key;
    HopboxOutput::FindOrFail(registry, name, key);
    return cExitFailed;
}
}  // namespace

const Command cSetCommand = {
    "set",
    "set NAME FIELD=VALUE...   (ApplicationPath, ContextFilePath, PDFSettings, HopboxName,"
    " HopboxIconPath; IsVirtualPrinter, IsPlugin, IsActive: true or false)",
    Run};
