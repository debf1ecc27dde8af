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
// Groups of the plug-in's settings that are not a Hopbox's: the plug-in's own and those of the settings
// store.
const QLatin1String cReservedGroups[] = {QLatin1String("CSPluginUI"), QLatin1String("SmartFileList"),
                                         QLatin1String("General"), QLatin1String("PrefSharing"),
                                         QLatin1String("Results")};

bool ToBool(const DictValue& value)
{
    GString memory;
    return GStringSupport::ToBool(value.GetText(memory));
}

// Most keys differ in their lengths.
bool Is(const QStringRef& key, const GString& name)
{
    return key.size() == name.size() && key == name;
}

// Sets what the key names; another key says nothing. Raises where a path is not a legal one.
void SetValue(HopboxRecord& record, const QStringRef& key, const DictValue& value)
{
    HopboxRegistryEntry& entry = record.entry;
    if (Is(key, HopboxRecordKey::cActorName))
        record.actorName = value.GetText();
    else if (Is(key, HopboxRecordKey::cApplicationPath))
        entry.applicationPath = GPathName(value.GetText());
    else if (Is(key, HopboxRecordKey::cContextFilePath))
        entry.contextFilePath = GPathName(value.GetText());
    else if (Is(key, HopboxRecordKey::cIsVirtualPrinter))
        entry.isVirtualPrinter = ToBool(value);
    else if (Is(key, HopboxRecordKey::cIsPlugin))
        entry.isPlugin = ToBool(value);
    else if (Is(key, HopboxRecordKey::cPDFSettings))
        entry.pdfSettings = value.GetText();
    else if (Is(key, HopboxRecordKey::cHopboxName))
        entry.hopboxName = value.GetText();
    else if (Is(key, HopboxRecordKey::cHopboxIconPath))
        entry.hopboxIconPath = GPathName(value.GetText());
    else if (Is(key, HopboxRecordKey::cIsActive))
        entry.isActive = ToBool(value);
}

// Sets what the key names, if it is of the offer. False for a path that is not a legal one.
bool SetValue(HopboxOffer& offer, const QStringRef& key, const DictValue& value)
{
    if (Is(key, HopboxRecordKey::cPDFSettings)) {
        offer.pdfSettings = value.GetText();
    } else if (Is(key, HopboxRecordKey::cIsPlugin)) {
        offer.isPlugin = ToBool(value);
    } else if (Is(key, HopboxRecordKey::cApplicationPath) || Is(key, HopboxRecordKey::cContextFilePath) ||
               Is(key, HopboxRecordKey::cHopboxIconPath)) {
        GString memory;
        return GPathName::IsLegal(value.GetText(memory));
    }
    return true;
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
    HopboxRecord record;
    try {
        if (!reader.ReadText(
                text, [&](const QStringRef& key, const DictValue& value) { SetValue(record, key, value); }))
            return false;
    } catch (const GException&) {
        return false;  // a path of another system, or garbage
    }
    *this = std::move(record);
    return true;
}

bool HopboxOffer::FromText(const GString& text)
{
    GDictBufferReader<GString, GString> reader;
    HopboxOffer offer;
    bool arePathsLegal = true;
    const bool isRead = reader.ReadText(text, [&](const QStringRef& key, const DictValue& value) {
        arePathsLegal = SetValue(offer, key, value) && arePathsLegal;
    });
    if (!isRead || !arePathsLegal)
        return false;
    *this = std::move(offer);
    return true;
}

const GString& HopboxRecord::GetPreferenceGroup(const GString& key) const
{
    const GString& name = GetName(key);
    const bool isReserved =
        std::find(std::begin(cReservedGroups), std::end(cReservedGroups), name) != std::end(cReservedGroups);
    return isReserved ? key : name;
}
