#include "hopbox/HopboxRegistry.h"

#include "foundation/core/GBufferSupport.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/core/GUniqueID.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/prefs/GPrefWriter.h"
#include "foundation/system/GFileSystemBase.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringMatcher>

namespace
{
const GBuffer cEntries = QByteArrayLiteral("PrinterProcessorRegistry");
const GBuffer cServerSettings = QByteArrayLiteral("HTTPServerSettings");
const GBuffer cAllowedOrigins = QByteArrayLiteral("AllowedOriginRequest");

std::vector<GBuffer> ListKeys(const GPrefModule& module)
{
    std::vector<GBuffer> keys;
    module.GetGroupPreferences(cEntries, keys);
    return keys;
}

// None for the null key, which stands for no entry; the empty key is one that a file can hold.
std::optional<HopboxRecord> ReadRecord(const GPrefModule& module, const GBuffer& key)
{
    if (key.isNull())
        return {};
    HopboxRecord record;
    if (const GString* text = module.Find(cEntries, key); text != nullptr && record.FromText(*text))
        return record;
    return {};
}

void WriteRecord(GPrefModule& module, const GBuffer& key, const HopboxRecord& record)
{
    module.Set(cEntries, key, record.ToText());
}

// The longest stretch of a text that its quoted form holds as it stands, however its escapes are written.
GString GetPlainStretch(const GString& text)
{
    GString longest;
    for (int begin = 0; begin < text.size();) {
        int end = begin;
        while (end < text.size() && !QStringLiteral("\\\"'\t\r\n").contains(text.at(end)))
            ++end;
        if (end - begin > longest.size())
            longest = text.mid(begin, end - begin);
        begin = end + 1;
    }
    return longest;
}

// Tells whether an entry is the one that is addressed by a name. Only records that hold the name somewhere
// are parsed.
class EntryMatch
{
public:
    explicit EntryMatch(const GString& name) : mName(name), mStretch(GetPlainStretch(name)) {}

    bool operator()(const GPrefModule& module, const GBuffer& key) const
    {
        return GBufferSupport::GetNameText(key) == mName || HasActorName(module, key);
    }

private:
    bool HasActorName(const GPrefModule& module, const GBuffer& key) const
    {
        const GString* text = module.Find(cEntries, key);
        HopboxRecord record;
        return text != nullptr && mStretch.indexIn(*text) >= 0 && record.FromText(*text) &&
               record.actorName == mName;
    }

    GString mName;
    QStringMatcher mStretch;
};

// The key of the first entry that is addressed by the name; a null buffer when there is none.
GBuffer FindIn(const GPrefModule& module, const GString& name)
{
    const EntryMatch isMatch(name);
    for (const GBuffer& key : ListKeys(module)) {
        if (isMatch(module, key))
            return key;
    }
    return {};
}

GBuffer MakeFreshKey(const GPrefModule& module)
{
    GBuffer key;
    do {
        key = GUniqueID::Create().GetHexText().toLatin1();
    } while (module.Has(cEntries, key));
    return key;
}

// The actor name that an updated entry gets: its own, if it was addressed by its key.
GString GetUpdatedActorName(const GPrefModule& module, const GBuffer& key, const GString& name)
{
    if (GBufferSupport::GetNameText(key) != name)
        return name;
    const std::optional<HopboxRecord> old = ReadRecord(module, key);
    return old ? old->actorName : GString();
}

// The first name on the way from a folder down to a path; empty when the path doesn't lie below the folder.
GString GetFirstNameBelow(const GPathName& path, const GPathName& folder)
{
    if (path.IsEmpty() || !path.IsBelow(folder))
        return {};
    return path.GetRelativeTo(folder).GetPortablePath().section(QLatin1Char('/'), 0, 0);
}
}  // namespace

UnreadRegistry::UnreadRegistry(const GPathName& registry, const GString& cause)
    : GCustomException(GErrorCode::cFile,
                       QStringLiteral("The registry \"%1\" can't be read: what Hopboxes there are is not "
                                      "known. %2")
                           .arg(registry.GetNativePath(), cause)),
      file(registry),
      reason(cause)
{
}

HopboxRegistry::HopboxRegistry()
{
    const GPathName path = GetPathName();
    GFileSystemBase::CreateFolder(path.GetParent());
    mModule = std::make_unique<GPrefSharedFileModule>(path, GEncoding::GetUTF16LittleEndian());
}

HopboxRegistry::~HopboxRegistry() = default;

GPathName HopboxRegistry::GetPathName()
{
    return GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
        .GetChild(QStringLiteral("Printer Processor/MorvanePrinterProcessor.prefs"));
}

const GPrefModule& HopboxRegistry::GetRead() const
{
    if (!mModule->GetUnreadReason().isEmpty())
        throw UnreadRegistry(mModule->GetPathName(), mModule->GetUnreadReason());
    return *mModule;
}

bool HopboxRegistry::AddEntry(const GString& actorName, const HopboxRegistryEntry& entry, GString* key)
{
    GBuffer freshKey;
    mModule->ChangeUnderLock([&](GPrefModule& module) {
        freshKey = MakeFreshKey(module);
        WriteRecord(module, freshKey, {actorName, entry});
    });
    if (key != nullptr)
        *key = GBufferSupport::GetNameText(freshKey);
    return true;
}

bool HopboxRegistry::AddFirstEntry(const GString& actorName, const HopboxRegistryEntry& entry, GString& key)
{
    GBuffer freshKey;
    mModule->ChangeUnderLock([&](GPrefModule& module) {
        if (!FindIn(module, actorName).isNull())
            return;
        freshKey = MakeFreshKey(module);
        WriteRecord(module, freshKey, {actorName, entry});
    });
    key = GBufferSupport::GetNameText(freshKey);
    return !freshKey.isNull();
}

HopboxRegistry::Renaming HopboxRegistry::RenameEntry(const GString& name, const GString& newName)
{
    Renaming renaming = Renaming::cNotFound;
    mModule->ChangeUnderLock([&](GPrefModule& module) {
        const GBuffer key = FindIn(module, name);
        std::optional<HopboxRecord> record = ReadRecord(module, key);
        if (!record)
            return;
        const GBuffer other = FindIn(module, newName);
        renaming = other.isNull() || other == key ? Renaming::cDone : Renaming::cTaken;
        if (renaming == Renaming::cTaken)
            return;
        for (GString* text : {&record->entry.pdfSettings, &record->entry.hopboxName}) {
            if (*text == record->actorName)
                *text = newName;
        }
        record->actorName = newName;
        WriteRecord(module, key, *record);
    });
    return renaming;
}

bool HopboxRegistry::RemoveEntry(const GString& name)
{
    return ChangeFound(name, [](GPrefModule& module, const GBuffer& key) {
        module.Remove(cEntries, key);
        return true;
    });
}

bool HopboxRegistry::UpdateEntry(const GString& name, const HopboxRegistryEntry& entry)
{
    return ChangeFound(name, [&](GPrefModule& module, const GBuffer& key) {
        WriteRecord(module, key, {GetUpdatedActorName(module, key, name), entry});
        return true;
    });
}

bool HopboxRegistry::ChangeEntry(const GString& name, const std::function<void(HopboxRegistryEntry&)>& change)
{
    return ChangeFound(name, [&](GPrefModule& module, const GBuffer& key) {
        std::optional<HopboxRecord> record = ReadRecord(module, key);
        if (!record)
            return false;
        change(record->entry);
        WriteRecord(module, key, *record);
        return true;
    });
}

bool HopboxRegistry::ChangeFound(const GString& name,
                                 const std::function<bool(GPrefModule&, const GBuffer&)>& change)
{
    bool isFound = false;
    mModule->ChangeUnderLock([&](GPrefModule& module) {
        const GBuffer key = FindIn(module, name);
        isFound = !key.isNull() && change(module, key);
    });
    return isFound;
}

bool HopboxRegistry::GetEntry(const GString& name, HopboxRegistryEntry& entry) const
{
    const std::optional<HopboxRecord> record = ReadRecord(GetRead(), FindIn(GetRead(), name));
    if (record)
        entry = record->entry;
    return record.has_value();
}

bool HopboxRegistry::FindByContextFile(const GPathName& contextFilePath, GString& actorName,
                                       HopboxRegistryEntry& entry) const
{
    for (const GBuffer& key : ListKeys(GetRead())) {
        const std::optional<HopboxRecord> record = ReadRecord(GetRead(), key);
        if (record && record->entry.contextFilePath == contextFilePath) {
            actorName = record->actorName;
            entry = record->entry;
            return true;
        }
    }
    return false;
}

QStringList HopboxRegistry::GetActorNames() const
{
    QStringList names;
    for (const GBuffer& key : ListKeys(GetRead())) {
        if (const std::optional<HopboxRecord> record = ReadRecord(GetRead(), key))
            names.append(record->actorName);
    }
    return names;
}

QStringList HopboxRegistry::GetKeys() const
{
    QStringList keys;
    for (const GBuffer& key : ListKeys(GetRead()))
        keys.append(GBufferSupport::GetNameText(key));
    return keys;
}

std::vector<std::pair<GString, GString>> HopboxRegistry::GetRecordTexts() const
{
    GPrefGroup entries;
    GetRead().GetGroupPreferences(cEntries, entries);
    std::vector<std::pair<GString, GString>> texts;
    texts.reserve(static_cast<size_t>(entries.GetCount()));
    for (const auto& entry : entries)
        texts.emplace_back(GBufferSupport::GetNameText(entry.key), entry.value);
    return texts;
}

GString HopboxRegistry::FindKey(const GString& name) const
{
    return GBufferSupport::GetNameText(FindIn(GetRead(), name));
}

std::optional<HopboxRecord> HopboxRegistry::GetRecord(const GString& key) const
{
    return ReadRecord(GetRead(), GBufferSupport::GetNameFromText(key));
}

GString HopboxRegistry::GetPreferenceGroup(const GString& key) const
{
    const std::optional<HopboxRecord> record = GetRecord(key);
    return record ? record->GetPreferenceGroup(key) : GString();
}

void HopboxRegistry::Clear()
{
    mModule->ChangeUnderLock([](GPrefModule& module) { module.RemoveGroup(cEntries); });
}

QStringList HopboxRegistry::GetAllowedOrigins() const
{
    QStringList origins;
    // What is no list stands for none.
    static_cast<void>(GListReader::ReadText(GetRead().Get(cServerSettings, cAllowedOrigins), origins));
    return origins;
}

void HopboxRegistry::SetAllowedOrigins(const QStringList& origins)
{
    GString text;
    GPrefWriter::AppendList(text, origins);
    mModule->ChangeUnderLock(
        [&](GPrefModule& module) { module.Set(cServerSettings, cAllowedOrigins, text); });
}

const std::optional<PrefDamage>& HopboxRegistry::GetDamage() const
{
    return mModule->GetDamage();
}

void HopboxRegistry::GetModificationTime(GDateTime& time) const
{
    const QFileInfo file(mModule->GetPathName().GetNativePath());
    if (file.exists())
        time = GDateTime::FromQDateTime(file.lastModified());
}

GPathName HopboxRegistry::GetCacheFolder()
{
    return GFileSystemBase::GetSpecialPath(GSpecialPath::cHopboxCacheRoot)
        .GetChild(QStringLiteral("Hopbox/Cache"));
}

const GPathName& HopboxRegistry::GetSettingsFolder()
{
    static const GPathName folder = GetCacheFolder().GetChild(QStringLiteral("Settings"));
    return folder;
}

int32_t HopboxRegistry::GetCacheEntryNumber(const GPathName& path) noexcept
{
    try {
        return GStringSupport::ToInt32(GetFirstNameBelow(path, GetCacheFolder()));
    } catch (const GException&) {
        return 0;
    }
}

bool HopboxRegistry::GetSettingsName(const GPathName& path, GString& name) noexcept
{
    try {
        name = GetFirstNameBelow(path, GetSettingsFolder());
    } catch (const GException&) {
        name.clear();
    }
    return !name.isEmpty();
}

bool HopboxRegistry::RenameSettingsInPath(const GString& newName, GPathName& path) noexcept
{
    GString name;
    if (!GetSettingsName(path, name) || name == newName)
        return false;
    try {
        const GPathName folder = GetSettingsFolder().GetChild(name);
        const GPathName newFolder = GetSettingsFolder().GetChild(newName);
        if (newFolder.GetParent() != GetSettingsFolder())
            return false;
        path = path == folder ? newFolder : newFolder.GetChild(path.GetRelativeTo(folder).GetPortablePath());
        return true;
    } catch (const GException&) {
        return false;
    }
}
