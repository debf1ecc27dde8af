#pragma once

#include "foundation/core/GDateTime.h"
#include "foundation/core/GException.h"
#include "foundation/core/GPathName.h"
#include "hopbox/HopboxRegistryEntry.h"

#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

class GPrefModule;
class GPrefSharedFileModule;
struct PrefDamage;

// The registry's file is there but could not be read, so that nothing is known of the Hopboxes in it.
class UnreadRegistry : public GCustomException
{
public:
    UnreadRegistry(const GPathName& registry, const GString& cause);

    const GPathName file;
    const GString reason;
};

// The registry in which every Hopbox application of a user enters itself: one shared settings file.
//
// A handle reads the file when it is made and then answers from memory; make a new one for each task, and
// close it with the task. What changes the registry takes the file's lock, reads it again, changes that and
// writes it back, so that changes of several processes all count; afterwards the handle answers from what was
// written.
//
// An entry is found by its key, the identifier that was made when it was added, or by its actor name. The
// first entry of the file that fits is taken. Both are compared exactly. Several entries may have one actor
// name. A record that can't be read is found only by
// its key, and then only to be replaced or removed.
//
// A missing file is an empty registry. Failures of the file and its lock raise a GException. A file that is
// there but can't be read (no right, something else in its place, a lock that is not available) is no empty
// registry: whatever answers from it raises UnreadRegistry, until a change has read it. A handle is used by
// one thread at a time.
class HopboxRegistry
{
public:
    // Opens the user's registry, and makes its folder when it is missing.
    HopboxRegistry();
    ~HopboxRegistry();
    HopboxRegistry(const HopboxRegistry&) = delete;
    HopboxRegistry& operator=(const HopboxRegistry&) = delete;

    // Where the registry of this user is.
    static GPathName GetPathName();

    // Adds an entry under a fresh key, also when there is one of that actor name. Gives the key where asked
    // for.
    [[nodiscard]] bool AddEntry(const GString& actorName, const HopboxRegistryEntry& entry,
                                GString* key = nullptr);

    // The same unless an entry is addressed by that name already, decided under the lock: of several
    // processes that add one name at once, one does. Gives whether the entry was added.
    [[nodiscard]] bool AddFirstEntry(const GString& actorName, const HopboxRegistryEntry& entry,
                                     GString& key);

    enum class Renaming
    {
        cDone,
        cNotFound,  // there is no such entry, or its record can't be read
        cTaken      // another entry is addressed by the new name
    };

    // Gives an entry another actor name, under the lock. The names under which it is listed and shown change
    // along where they were the same as the old one.
    [[nodiscard]] Renaming RenameEntry(const GString& name, const GString& newName);

    // The others give whether the entry was found.
    [[nodiscard]] bool RemoveEntry(const GString& name);

    // Replaces an entry under its key. One that is addressed by its key keeps its actor name.
    [[nodiscard]] bool UpdateEntry(const GString& name, const HopboxRegistryEntry& entry);

    // Lets `change` work on the entry as the file holds it now, with nobody else's change between reading and
    // writing. It is not called when the entry isn't found or can't be read.
    [[nodiscard]] bool ChangeEntry(const GString& name,
                                   const std::function<void(HopboxRegistryEntry&)>& change);

    [[nodiscard]] bool GetEntry(const GString& name, HopboxRegistryEntry& entry) const;

    // The first entry whose context file path is the given one.
    [[nodiscard]] bool FindByContextFile(const GPathName& contextFilePath, GString& actorName,
                                         HopboxRegistryEntry& entry) const;

    // The actor names of all entries that can be read, one for each entry, in the order of the file.
    QStringList GetActorNames() const;

    // The key of the entry that is addressed so; empty when there is none.
    GString FindKey(const GString& name) const;

    // The keys of all entries, those that can't be read included, in the order of the file.
    QStringList GetKeys() const;

    // The entry of that key with its actor name; none when there is no such key or its record can't be read.
    std::optional<HopboxRecord> GetRecord(const GString& key) const;

    // The key and the record of each entry, which may be one that can't be read, in the order of the file.
    std::vector<std::pair<GString, GString>> GetRecordTexts() const;

    // The group of the plug-in's settings that belongs to the entry of that key: its actor name, or its key
    // where that is empty or is the name of a group that the plug-in keeps for itself. Empty when the entry
    // can't be read.
    GString GetPreferenceGroup(const GString& key) const;

    // Removes all entries. The allowed origins stay.
    void Clear();

    // The origins whose requests the Hopboxes' web service allows.
    QStringList GetAllowedOrigins() const;
    void SetAllowedOrigins(const QStringList& origins);

    // The damage of the file that this handle read, and once it has changed the registry, where the damaged
    // file is kept; none when the file was read whole. Entries may be missing then.
    const std::optional<PrefDamage>& GetDamage() const;

    // When the registry's file was last changed; `time` stays as it is when there is none. Tells that another
    // process changed the registry.
    void GetModificationTime(GDateTime& time) const;

    // The folder of the Hopbox applications; each lies in a sub-folder whose name is a number. And the folder
    // of their settings below it, with a sub-folder for each settings name, which is computed once per
    // process.
    static GPathName GetCacheFolder();
    static const GPathName& GetSettingsFolder();

    // The number of the sub-folder of the cache folder in which the path lies, at any depth: it tells which
    // build of the Hopbox application that is. 0 for a path elsewhere and for a sub-folder whose name is no
    // number.
    static int32_t GetCacheEntryNumber(const GPathName& path) noexcept;

    // The settings name of a path: the sub-folder of the settings folder in which it lies. False, with an
    // empty name, for a path elsewhere.
    [[nodiscard]] static bool GetSettingsName(const GPathName& path, GString& name) noexcept;

    // Puts another settings name into a path. True when the path has a settings name that differs from the
    // new one. A new name that can't be the name of a folder changes nothing.
    [[nodiscard]] static bool RenameSettingsInPath(const GString& newName, GPathName& path) noexcept;

private:
    const GPrefModule& GetRead() const;
    [[nodiscard]] bool ChangeFound(const GString& name,
                                   const std::function<bool(GPrefModule&, const GBuffer&)>& change);

    std::unique_ptr<GPrefSharedFileModule> mModule;
};
