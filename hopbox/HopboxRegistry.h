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

// The registry's file is there but could not be read, so nothing is known about the Hopboxes in it.
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
// close it with the task. An operation that changes the registry takes the file's lock, reads the file again,
// makes the change and writes the file back. So no change of another process is lost. After that the handle
// answers from what was written.
//
// An entry is found by its key or by its actor name. The key is the identifier that was made when the entry
// was added. The first entry in the file that matches is taken; both are compared exactly. Several entries
// may have the same actor name. A record that can't be read is found only by its key, and can only be
// replaced or removed.
//
// A missing file is an empty registry. Failures of the file and its lock raise a GException. A file that is
// there but can't be read (no right, something else in its place, a lock that is not available) does not
// count as an empty registry: operations that need its content raise UnreadRegistry, until a change has read
// the file. A handle is used by one thread at a time.
class HopboxRegistry
{
public:
    // Opens the user's registry, and makes its folder if it is missing.
    HopboxRegistry();
    ~HopboxRegistry();
    HopboxRegistry(const HopboxRegistry&) = delete;
    HopboxRegistry& operator=(const HopboxRegistry&) = delete;

    // Where the registry of this user is.
    static GPathName GetPathName();

    // Adds an entry under a new key, even if there is already an entry with that actor name. Sets `key` if it
    // is given.
    [[nodiscard]] bool AddEntry(const GString& actorName, const HopboxRegistryEntry& entry,
                                GString* key = nullptr);

    // The same, unless an entry can already be found by that name. This is decided under the lock: if several
    // processes add the same name at once, only one succeeds. Gives whether the entry was added.
    [[nodiscard]] bool AddFirstEntry(const GString& actorName, const HopboxRegistryEntry& entry,
                                     GString& key);

    enum class Renaming
    {
        cDone,
        cNotFound,  // there is no such entry, or its record can't be read
        cTaken      // another entry is already found by the new name
    };

    // Gives an entry another actor name, under the lock. The names under which it is listed and shown change
    // too, if they were the same as the old actor name.
    [[nodiscard]] Renaming RenameEntry(const GString& name, const GString& newName);

    // The next operations give whether the entry was found.
    [[nodiscard]] bool RemoveEntry(const GString& name);

    // Replaces an entry under its key. If `name` is the key, the entry keeps its actor name.
    [[nodiscard]] bool UpdateEntry(const GString& name, const HopboxRegistryEntry& entry);

    // Calls `change` with the entry as the file holds it now; nobody else can change the entry between
    // reading and writing. `change` is not called when the entry isn't found or can't be read.
    [[nodiscard]] bool ChangeEntry(const GString& name,
                                   const std::function<void(HopboxRegistryEntry&)>& change);

    [[nodiscard]] bool GetEntry(const GString& name, HopboxRegistryEntry& entry) const;

    // The first entry whose context file path is the given one.
    [[nodiscard]] bool FindByContextFile(const GPathName& contextFilePath, GString& actorName,
                                         HopboxRegistryEntry& entry) const;

    // The actor names of all entries that can be read, one for each entry, in the order of the file.
    QStringList GetActorNames() const;

    // The key of the entry that is found by this name; empty when there is none.
    GString FindKey(const GString& name) const;

    // The keys of all entries, also of those that can't be read, in the order of the file.
    QStringList GetKeys() const;

    // The entry of that key with its actor name; none when there is no such key or its record can't be read.
    std::optional<HopboxRecord> GetRecord(const GString& key) const;

    // The key and the record of each entry in the order of the file. A record may be one that can't be read.
    std::vector<std::pair<GString, GString>> GetRecordTexts() const;

    // The group of the plug-in's settings that belongs to the entry with that key. It is the actor name; or
    // the key, if the actor name is empty or is the name of a group that the plug-in keeps for itself. Empty
    // when the entry can't be read.
    GString GetPreferenceGroup(const GString& key) const;

    // Removes all entries. The allowed origins stay.
    void Clear();

    // The origins whose requests the Hopboxes' web service allows.
    QStringList GetAllowedOrigins() const;
    void SetAllowedOrigins(const QStringList& origins);

    // The damage in the file that this handle read; none when the file was read whole. After this handle has
    // changed the registry, it also tells where the damaged file is kept. When there is damage, entries may
    // be missing.
    const std::optional<PrefDamage>& GetDamage() const;

    // When the registry's file was last changed; `time` stays as it is when there is no file. Shows whether
    // another process changed the registry.
    void GetModificationTime(GDateTime& time) const;

    // The folder of the Hopbox applications; each is in a sub-folder whose name is a number. Below it is the
    // folder of their settings, with a sub-folder for each settings name; its path is made once per process.
    static GPathName GetCacheFolder();
    static const GPathName& GetSettingsFolder();

    // The number of the sub-folder of the cache folder that contains the path, at any depth. It tells which
    // build of the Hopbox application that is. 0 for a path elsewhere and for a sub-folder whose name is not
    // a number.
    static int32_t GetCacheEntryNumber(const GPathName& path) noexcept;

    // The settings name of a path: the sub-folder of the settings folder that contains the path. For a path
    // elsewhere, gives false and an empty name.
    [[nodiscard]] static bool GetSettingsName(const GPathName& path, GString& name) noexcept;

    // Replaces the settings name in a path. True when the path has a settings name that differs from the new
    // one. A new name that can't be a folder's name changes nothing.
    [[nodiscard]] static bool RenameSettingsInPath(const GString& newName, GPathName& path) noexcept;

private:
    const GPrefModule& GetRead() const;
    [[nodiscard]] bool ChangeFound(const GString& name,
                                   const std::function<bool(GPrefModule&, const GBuffer&)>& change);

    std::unique_ptr<GPrefSharedFileModule> mModule;
};
