#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/GPrefGroups.h"
#include "foundation/prefs/GSettingsInterface.h"

#include <memory>
#include <vector>

class GInputStream;
class GOutputStream;

// One layer of the settings store: groups of keys and values in memory. A derived class decides where they
// are stored. Reads are answered from memory; changes make the module dirty, and FlushPrefs writes them to
// the storage. Used by one thread.
//
// Temporary use lets a dialog change settings and undo all of the changes: StartUsingTempModule remembers the
// groups, and EndUsingTempModule restores them unless one of the nested uses ended with `keep`.
class GPrefModule : public GSettingsInterface
{
public:
    ~GPrefModule() override;

    const GString& Get(const GBuffer& group, const GBuffer& key) const override;
    void Set(const GBuffer& group, const GBuffer& key, const GString& value) override;
    bool Has(const GBuffer& group, const GBuffer& key) const override;

    // Writes the changes to the storage; does nothing when there are none. Raises a GException when that
    // fails: the storage is then as it was, and the module stays dirty.
    virtual void FlushPrefs();

    // Replaces the module's content by that of the storage; changes that were not flushed are lost. Raises a
    // GException when the storage can't be read.
    virtual void Refresh();

    virtual void StartUsingTempModule();
    virtual bool IsDirty() const;
    virtual void SetDirty(bool isDirty);

    // Ends the innermost temporary use. At the end of the outermost use the groups and the dirty mark become
    // what they were at its start, unless this use or one inside it ended with `keep`. What was flushed
    // meanwhile stays in the storage. So if a flush wrote any change of the temporary use, the module is
    // dirty then.
    virtual void EndUsingTempModule(bool keep);

    // Sets a value that stays however the temporary use ends.
    virtual void SetIgnoreTemp(const GBuffer& group, const GBuffer& key, const GString& value);

    virtual void RemoveGroup(const GBuffer& group);

    // The encoding in which the module is written from now on.
    virtual void SetEncoding(const GEncodingRef& encoding);

    // The names of all groups, also of those without entries; the keys and values of one group. The old
    // content of the second argument is dropped; it is empty when there is no such group.
    virtual void GetGroupNames(std::vector<GBuffer>& names) const;
    virtual void GetGroupPreferences(const GBuffer& group, GPrefGroup& preferences) const;
    virtual void GetGroupPreferences(const GBuffer& group, std::vector<GBuffer>& keys) const;

    virtual void Remove(const GBuffer& group, const GBuffer& key);

    // Sets every value that the other module holds; values that only this module has stay.
    virtual void UpdateWith(const GPrefModule& module);

    // The part of Refresh and FlushPrefs that reads and writes the storage.
    virtual void ReadDict() = 0;
    virtual void WriteDict() = 0;

    // The value; null when there is none. Get, Has and the store use this function.
    virtual const GString* Find(const GBuffer& group, const GBuffer& key) const;

    // Whether the module has any mark that a group is shared. The store asks this before each look-up, so
    // that a module without such marks costs no time.
    bool HasSharingMarks() const { return mHasSharingMarks; }

    const GEncodingRef& GetEncoding() const { return mEncoding; }

    // Writes the groups as a document; those without entries are left out. A byte order mark goes first in
    // UTF-16.
    void GetPrefsDataToStream(GOutputStream& stream, const GEncodingRef& encoding) const;

protected:
    explicit GPrefModule(const GEncodingRef& encoding);

    // Reads a document into the groups, in the given encoding (null: find it). From a damaged document, the
    // readable part is used; `name` is for the line in the log that says so. Gives the byte of the stream at
    // which the damage begins, or -1.
    int64_t ReadGroups(GInputStream& stream, const GEncodingRef& encoding, const GString& name);

    // Drops every group.
    void ClearGroups();

    // Call this when the storage holds the groups as they are now.
    void NoteWritten();

    // The current groups, and the groups that are restored when a temporary use is undone.
    const GPrefGroups& GetGroups() const { return mGroups; }
    const GPrefGroups& GetLastingGroups() const { return mBackup != nullptr ? *mBackup : mGroups; }

    // From now on, undoing a temporary use restores the groups as they are now.
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
