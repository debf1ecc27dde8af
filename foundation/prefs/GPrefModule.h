#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/GPrefGroups.h"
#include "foundation/prefs/GSettingsInterface.h"

#include <memory>
#include <vector>

class GInputStream;
class GOutputStream;

// One layer of the settings store: groups of keys and values in memory, and the way in which a derived class
// keeps them. Reads are answered from memory; changes make the module dirty and reach the storage with
// FlushPrefs. Used by one thread.
//
// Temporary use lets a dialog change settings in place and take all of it back: StartUsingTempModule
// remembers the groups, EndUsingTempModule brings them back unless one of the nested uses was ended to be
// kept.
class GPrefModule : public GSettingsInterface
{
public:
    ~GPrefModule() override;

    const GString& Get(const GBuffer& group, const GBuffer& key) const override;
    void Set(const GBuffer& group, const GBuffer& key, const GString& value) override;
    bool Has(const GBuffer& group, const GBuffer& key) const override;

    // Brings what was changed to the storage; does nothing when nothing was. Raises a GException when that
    // fails: the storage then holds what it held, and the module stays dirty.
    virtual void FlushPrefs();

    // Takes the storage's content for the module's; changes that were not flushed are lost. Raises a
    // GException when the storage can't be read.
    virtual void Refresh();

    virtual void StartUsingTempModule();
    virtual bool IsDirty() const;
    virtual void SetDirty(bool isDirty);

    // Ends the innermost temporary use. At the end of the outermost the groups and the dirty mark become what
    // they were at its start, unless it or one inside it was to be kept. What was flushed meanwhile stays in
    // the storage, so the module is dirty then if the flush brought any change of the use there.
    virtual void EndUsingTempModule(bool keep);

    // Sets a value that stays however the temporary use ends.
    virtual void SetIgnoreTemp(const GBuffer& group, const GBuffer& key, const GString& value);

    virtual void RemoveGroup(const GBuffer& group);

    // The encoding in which the module is written from now on.
    virtual void SetEncoding(const GEncodingRef& encoding);

    // The names of all groups, also of those without entries; the keys and values of one group. What the
    // second argument held before is dropped; it is empty when there is no such group.
    virtual void GetGroupNames(std::vector<GBuffer>& names) const;
    virtual void GetGroupPreferences(const GBuffer& group, GPrefGroup& preferences) const;
    virtual void GetGroupPreferences(const GBuffer& group, std::vector<GBuffer>& keys) const;

    virtual void Remove(const GBuffer& group, const GBuffer& key);

    // Sets every value that the other module holds; what only this one holds stays.
    virtual void UpdateWith(const GPrefModule& module);

    // What Refresh and FlushPrefs do with the storage.
    virtual void ReadDict() = 0;
    virtual void WriteDict() = 0;

    // The value; null when there is none. Get and Has answer by this, and so does the store.
    virtual const GString* Find(const GBuffer& group, const GBuffer& key) const;

    // Whether the module holds any mark that shares a group: asked before each look-up in the store, so that
    // one without such marks costs nothing.
    bool HasSharingMarks() const { return mHasSharingMarks; }

    const GEncodingRef& GetEncoding() const { return mEncoding; }

    // Writes the groups as a document; those without entries are left out. A byte order mark goes first in
    // UTF-16.
    void GetPrefsDataToStream(GOutputStream& stream, const GEncodingRef& encoding) const;

protected:
    explicit GPrefModule(const GEncodingRef& encoding);

    // Reads a document into the groups, in the encoding, null to find it. Of a damaged document what could be
    // read is taken; `name` is for the line in the log that says so. Gives the byte of the stream where the
    // damage begins, or -1.
    int64_t ReadGroups(GInputStream& stream, const GEncodingRef& encoding, const GString& name);

    // Drops every group.
    void ClearGroups();

    // Tells that the storage holds the groups as they are now.
    void NoteWritten();

    // The groups as they are, and as they will be when a temporary use is taken back.
    const GPrefGroups& GetGroups() const { return mGroups; }
    const GPrefGroups& GetLastingGroups() const { return mBackup != nullptr ? *mBackup : mGroups; }

    // Makes the groups as they are those to which a temporary use comes back.
    void RebaseTempUse();

private:
    void SetIn(GPrefGroups& groups, const GBuffer& group, const GBuffer& key, const GString& value);
    void NoteSharingMarks();

    int32_t mTempUses = 0;
    bool mIsTempKept = false;
    std::unique_ptr<GPrefGroups> mBackup;  // the groups at the start of the outermost temporary use
    bool mIsDirty = false;
    bool mWasDirty = false;  // at the start of the outermost temporary use
    GPrefGroups mGroups;
    mutable int32_t mWritesInProgress = 0;  // no change may come in between
    GEncodingRef mEncoding;
    bool mHasSharingMarks = false;
};
