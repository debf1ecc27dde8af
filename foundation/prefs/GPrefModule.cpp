#include "foundation/prefs/GPrefModule.h"

#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefWriter.h"
#include "foundation/prefs/GText2BinStream.h"
#include "foundation/prefs/PrefChanges.h"
#include "foundation/prefs/PrefSharing.h"
#include "foundation/trace/GTrace.h"

namespace
{
const GString cNoValue;

// Counts a write while it runs.
class WriteInProgress
{
public:
    explicit WriteInProgress(int32_t& count) : mCount(count) { ++mCount; }
    ~WriteInProgress() { --mCount; }
    WriteInProgress(const WriteInProgress&) = delete;
    WriteInProgress& operator=(const WriteInProgress&) = delete;

private:
    int32_t& mCount;
};
}  // namespace

GPrefModule::GPrefModule(const GEncodingRef& encoding) : mEncoding(encoding) {}

GPrefModule::~GPrefModule() = default;

const GString* GPrefModule::Find(const GBuffer& group, const GBuffer& key) const
{
    const GPrefGroup* preferences = mGroups.Find(group);
    return preferences != nullptr ? preferences->Find(key) : nullptr;
}

const GString& GPrefModule::Get(const GBuffer& group, const GBuffer& key) const
{
    const GString* value = Find(group, key);
    return value != nullptr ? *value : cNoValue;
}

bool GPrefModule::Has(const GBuffer& group, const GBuffer& key) const
{
    return Find(group, key) != nullptr;
}

void GPrefModule::Set(const GBuffer& group, const GBuffer& key, const GString& value)
{
    SetIn(mGroups, group, key, value);
    SetDirty(true);
}

void GPrefModule::SetIgnoreTemp(const GBuffer& group, const GBuffer& key, const GString& value)
{
    Set(group, key, value);
    if (mBackup != nullptr) {
        SetIn(*mBackup, group, key, value);
        mWasDirty = true;
    }
}

void GPrefModule::SetIn(GPrefGroups& groups, const GBuffer& group, const GBuffer& key, const GString& value)
{
    if (mWritesInProgress != 0)
        GTrace::Assert(QStringLiteral("GPrefModule::Set"),
                       QStringLiteral("changed while it is being written"));
    groups.FindOrInsert(group).Insert(key, value);
    mHasSharingMarks = mHasSharingMarks || group == PrefSharing::GetGroup();
}

void GPrefModule::Remove(const GBuffer& group, const GBuffer& key)
{
    GPrefGroup* preferences = mGroups.Find(group);
    if (preferences != nullptr && preferences->Remove(key))
        SetDirty(true);
}

void GPrefModule::RemoveGroup(const GBuffer& group)
{
    if (!mGroups.Remove(group))
        return;
    NoteSharingMarks();
    SetDirty(true);
}

void GPrefModule::UpdateWith(const GPrefModule& module)
{
    if (&module == this)
        return;
    for (const auto& group : module.mGroups) {
        for (const auto& preference : group.value)
            Set(group.key, preference.key, preference.value);
    }
}

void GPrefModule::FlushPrefs()
{
    WriteDict();
}

void GPrefModule::Refresh()
{
    ReadDict();
}

bool GPrefModule::IsDirty() const
{
    return mIsDirty;
}

void GPrefModule::SetDirty(bool isDirty)
{
    mIsDirty = isDirty;
}

void GPrefModule::SetEncoding(const GEncodingRef& encoding)
{
    mEncoding = encoding;
}

void GPrefModule::StartUsingTempModule()
{
    if (mTempUses++ > 0)
        return;
    mBackup = std::make_unique<GPrefGroups>(mGroups);
    mWasDirty = IsDirty();
    mIsTempKept = false;
}

void GPrefModule::EndUsingTempModule(bool keep)
{
    if (mTempUses == 0) {
        GTrace::Assert(QStringLiteral("GPrefModule::EndUsingTempModule"),
                       QStringLiteral("ended, but never started"));
        return;
    }
    mIsTempKept = mIsTempKept || keep;
    if (--mTempUses > 0)
        return;
    if (!mIsTempKept) {
        mGroups = std::move(*mBackup);
        NoteSharingMarks();
        SetDirty(mWasDirty);
    }
    mBackup.reset();
}

void GPrefModule::GetGroupNames(std::vector<GBuffer>& names) const
{
    names.clear();
    for (const auto& group : mGroups)
        names.push_back(group.key);
}

void GPrefModule::GetGroupPreferences(const GBuffer& group, GPrefGroup& preferences) const
{
    const GPrefGroup* found = mGroups.Find(group);
    preferences = found != nullptr ? *found : GPrefGroup();
}

void GPrefModule::GetGroupPreferences(const GBuffer& group, std::vector<GBuffer>& keys) const
{
    keys.clear();
    if (const GPrefGroup* found = mGroups.Find(group)) {
        for (const auto& preference : *found)
            keys.push_back(preference.key);
    }
}

void GPrefModule::GetPrefsDataToStream(GOutputStream& stream, const GEncodingRef& encoding) const
{
    const WriteInProgress write(mWritesInProgress);
    GText2BinStream text(stream, encoding);
    GPrefWriter::WriteDocument(text, mGroups);
}

int64_t GPrefModule::ReadGroups(GInputStream& stream, const GEncodingRef& encoding, const GString& name)
{
    GDictListReader<GBuffer, GBuffer, GString> reader;
    static_cast<void>(reader.Read(stream, encoding, mGroups));  // the place of the damage says more
    NoteSharingMarks();
    const int64_t damage = reader.GetDamagePosition();
    if (damage >= 0) {
        GTrace::Error(QStringLiteral("GPrefModule::ReadDict"),
                      QStringLiteral("\"%1\" is damaged from byte %2 on; what can be read of it is used.")
                          .arg(name, QString::number(damage)));
    }
    return damage;
}

void GPrefModule::ClearGroups()
{
    mGroups.Clear();
    NoteSharingMarks();
}

void GPrefModule::NoteWritten()
{
    SetDirty(false);
    // What the temporary use comes back to is not what the storage holds, unless nothing was changed in it.
    mWasDirty = mBackup != nullptr && !PrefChanges(mGroups, *mBackup).IsEmpty();
}

void GPrefModule::RebaseTempUse()
{
    if (mBackup != nullptr)
        *mBackup = mGroups;
    mWasDirty = IsDirty();
}

void GPrefModule::NoteSharingMarks()
{
    mHasSharingMarks = mGroups.Has(PrefSharing::GetGroup());
}
