#include "hopbox/HopboxRegistryEntry.h"

#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GOrderedDictWriter.h"

#include <algorithm>
#include <iterator>
#include <tuple>

const GString HopboxRecordKey::cActorName = QStringLiteral("ActorName");
const GString HopboxRecordKey::cApplicationPath = QStringLiteral("ApplicationPath");
const GString HopboxRecordKey::cContextFilePath = QStringLiteral("ContextFilePath");
const GString HopboxRecordKey::cPDFSettings = QStringLiteral("PDFSettings");
const GString HopboxRecordKey::cHopboxName = QStringLiteral("HopboxName");
const GString HopboxRecordKey::cHopboxIconPath = QStringLiteral("HopboxIconPath");
const GString HopboxRecordKey::cIsVirtualPrinter = QStringLiteral("IsVirtualPrinter");
const GString HopboxRecordKey::cIsPlugin = QStringLiteral("IsPlugin");
const GString HopboxRecordKey::cIsActive = QStringLiteral("IsActive");

namespace
{
using Values = GDict<GString, GString>;

// Groups of the plug-in's settings that are not a Hopbox's: the plug-in's own and those of the settings
// store.
const QLatin1String cReservedGroups[] = {QLatin1String("CSPluginUI"), QLatin1String("SmartFileList"),
                                         QLatin1String("General"), QLatin1String("PrefSharing")};

GString GetText(const Values& values, const GString& key)
{
    const GString* value = values.Find(key);
    return value != nullptr ? *value : GString();
}

bool GetBool(const Values& values, const GString& key)
{
    return GStringSupport::ToBool(GetText(values, key));
}

// Raises where the text is no legal path.
GPathName GetPath(const Values& values, const GString& key)
{
    return GPathName(GetText(values, key));
}

HopboxRecord MakeRecord(const Values& values)
{
    HopboxRecord record;
    record.actorName = GetText(values, HopboxRecordKey::cActorName);
    record.entry.applicationPath = GetPath(values, HopboxRecordKey::cApplicationPath);
    record.entry.contextFilePath = GetPath(values, HopboxRecordKey::cContextFilePath);
    record.entry.isVirtualPrinter = GetBool(values, HopboxRecordKey::cIsVirtualPrinter);
    record.entry.isPlugin = GetBool(values, HopboxRecordKey::cIsPlugin);
    record.entry.pdfSettings = GetText(values, HopboxRecordKey::cPDFSettings);
    record.entry.hopboxName = GetText(values, HopboxRecordKey::cHopboxName);
    record.entry.hopboxIconPath = GetPath(values, HopboxRecordKey::cHopboxIconPath);
    record.entry.isActive = GetBool(values, HopboxRecordKey::cIsActive);
    return record;
}

auto GetFields(const HopboxRegistryEntry& entry)
{
    return std::tie(entry.applicationPath, entry.contextFilePath, entry.isVirtualPrinter, entry.isPlugin,
                    entry.pdfSettings, entry.hopboxName, entry.hopboxIconPath, entry.isActive);
}
}  // namespace

bool HopboxRegistryEntry::operator==(const HopboxRegistryEntry& other) const
{
    return GetFields(*this) == GetFields(other);
}

std::vector<std::pair<GString, GString>> HopboxRecord::GetValues() const
{
    return {{HopboxRecordKey::cActorName, actorName},
            {HopboxRecordKey::cApplicationPath, entry.applicationPath.GetNativePath()},
            {HopboxRecordKey::cContextFilePath, entry.contextFilePath.GetNativePath()},
            {HopboxRecordKey::cPDFSettings, entry.pdfSettings},
            {HopboxRecordKey::cHopboxName, entry.hopboxName},
            {HopboxRecordKey::cHopboxIconPath, entry.hopboxIconPath.GetNativePath()},
            {HopboxRecordKey::cIsVirtualPrinter, GStringSupport::FromBool(entry.isVirtualPrinter)},
            {HopboxRecordKey::cIsPlugin, GStringSupport::FromBool(entry.isPlugin)},
            {HopboxRecordKey::cIsActive, GStringSupport::FromBool(entry.isActive)}};
}

GString HopboxRecord::ToText() const
{
    GOrderedDictWriter writer;
    for (const auto& value : GetValues())
        writer.Add(value.first, value.second);
    return writer.Finish();
}

bool HopboxRecord::FromText(const GString& text)
{
    GDictBufferReader<GString, GString> reader;
    Values values;
    if (!reader.ReadText(text, values))
        return false;
    try {
        *this = MakeRecord(values);
        return true;
    } catch (const GException&) {
        return false;  // a path of another system, or garbage
    }
}

const GString& HopboxRecord::GetPreferenceGroup(const GString& key) const
{
    const GString& name = GetName(key);
    const bool isReserved =
        std::find(std::begin(cReservedGroups), std::end(cReservedGroups), name) != std::end(cReservedGroups);
    return isReserved ? key : name;
}
