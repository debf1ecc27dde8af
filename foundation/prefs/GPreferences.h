#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/PrefText.h"

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

class GPrefModule;

// The process-wide store of settings: a stack of modules, each with a number. They are asked from the highest
// number to the lowest. The first module that has a key gives its value; a key that no module has reads as
// the empty text.
//
// A group can be shared: it is then stored in module -2, the file that all programs of the user share. If
// there is no module -2, a shared group stays where it is.
//
// Values are texts; the typed operations convert to and from them. Booleans are "true" and "false", and any
// other text is false. A text that is not a number reads as 0, one that is not a path as the empty path, one
// that is not a moment as no moment.
//
// Used by one thread. Exceptions from a module are passed on; see the modules.
class GPreferences
{
public:
    // The numbers of the default modules. An application's own modules have numbers from 0 upwards and are
    // asked before these.
    static constexpr int32_t cSharedFileModule = -2;
    static constexpr int32_t cUserFileModule = -3;
    static constexpr int32_t cSystemFileModule = -4;
    static constexpr int32_t cMemoryModule = -5;

    // Which default modules to make.
    enum DefaultModule : uint32_t
    {
        cWithMemory = 1,
        cWithSystemFile = 2,
        cWithUserFile = 4,
        cWithSharedFile = 8
    };

    // Makes the store ready: UTF-16 for what modules write, and the variables "%MorvaneUserPreferences%" and
    // "%MorvaneGlobalPreferences%" for the folders in stored paths. A second call changes nothing.
    static void Initialize();

    // Flushes every module and empties the store. When a flush raises, the store is still emptied, and the
    // first exception is passed on.
    static void Finalize();

    // Makes the default modules that the flags name and reads their files: "Morvane.uprefs" and the
    // application's name with ".uprefs" in the user's preference folder, the name with ".sprefs" in that of
    // all users.
    static void SetDefaultModules(const GString& applicationName, uint32_t flags);

    // Puts a module under a number and replaces the one that is there. In the first form the store owns it;
    // in the second it belongs to the caller, and must exist for as long as it is in the store.
    static void SetPrefModule(int32_t id, std::unique_ptr<GPrefModule> module);
    static void SetPrefModule(int32_t id, GPrefModule& module);

    // The module; null when there is none.
    static GPrefModule* GetPrefModule(int32_t id);

    // Removes a module, without flushing it; deletes it when the store owns it.
    static void RemovePrefModule(int32_t id);

    // Sets the encoding of all existing modules and of default modules that are made later.
    static void SetEncoding(const GEncodingRef& encoding);

    static void AddVariableSubstitution(std::unique_ptr<GVariableSubstitution> substitution);

    // Flush every module, or read every module again; the second also copies shared groups
    // (CopySharedPreferences). When a module raises, the others are still done, and the first exception is
    // passed on.
    static void FlushPrefs();
    static void Refresh();

    // Whether any module is dirty.
    static bool IsDirty();

    // Temporary use of every module: see GPrefModule.
    static void StartUsingTempModules();
    static void EndUsingTempModules(bool keep);

    // Sets all values of each given module in the store's module with that number; a number without a module
    // is skipped.
    static void UpdatePreferencesWith(const std::vector<std::pair<int32_t, const GPrefModule*>>& modules);

    // Without a number: in any module. With a number: only in that module; if there is no such module, the
    // answer is as for a missing key.
    static bool Has(const GBuffer& group, const GBuffer& key);
    static bool Has(int32_t id, const GBuffer& group, const GBuffer& key);
    static GString Get(const GBuffer& group, const GBuffer& key) { return As<GString>(Find(group, key)); }
    static GString Get(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<GString>(Find(id, group, key));
    }

    static int32_t GetInt32(const GBuffer& group, const GBuffer& key)
    {
        return As<int32_t>(Find(group, key));
    }
    static int32_t GetInt32(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<int32_t>(Find(id, group, key));
    }
    static bool GetBool(const GBuffer& group, const GBuffer& key) { return As<bool>(Find(group, key)); }
    static bool GetBool(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<bool>(Find(id, group, key));
    }
    static double GetReal(const GBuffer& group, const GBuffer& key) { return As<double>(Find(group, key)); }
    static double GetReal(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<double>(Find(id, group, key));
    }
    static GPathName GetPathName(const GBuffer& group, const GBuffer& key)
    {
        return As<GPathName>(Find(group, key));
    }
    static GPathName GetPathName(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<GPathName>(Find(id, group, key));
    }
    static GDateTime GetDateTime(const GBuffer& group, const GBuffer& key)
    {
        return As<GDateTime>(Find(group, key));
    }
    static GDateTime GetDateTime(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return As<GDateTime>(Find(id, group, key));
    }

    // Give whether a value was found; if not, the target becomes empty, 0 or false.
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, GString& value)
    {
        return GetAs(Find(group, key), value);
    }
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, int32_t& value)
    {
        return GetAs(Find(group, key), value);
    }
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, bool& value)
    {
        return GetAs(Find(group, key), value);
    }
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, double& value)
    {
        return GetAs(Find(group, key), value);
    }
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, GPathName& value)
    {
        return GetAs(Find(group, key), value);
    }
    [[nodiscard]] static bool Get(const GBuffer& group, const GBuffer& key, GDateTime& value)
    {
        return GetAs(Find(group, key), value);
    }

    // The value, without asking module -2.
    static GString GetNonSharedPref(const GBuffer& group, const GBuffer& key)
    {
        return As<GString>(FindNonShared(group, key));
    }

    // The names of the module's groups; none when there is no such module.
    static void GetGroupNames(int32_t id, std::vector<GBuffer>& names);

    // Set a value in a module, in module -2 instead of -3 when the group is shared. The module must exist: a
    // number without a module is a programming error, which is reported as an assertion, and nothing is set.
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value)
    {
        SetAs(id, group, key, value);
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, int32_t value)
    {
        SetAs(id, group, key, value);
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, bool value)
    {
        SetAs(id, group, key, value);
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, double value)
    {
        SetAs(id, group, key, value);
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, const char* utf8Text)
    {
        SetAs(id, group, key, GString::fromUtf8(utf8Text));
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, const GPathName& value)
    {
        SetAs(id, group, key, value);
    }
    static void Set(int32_t id, const GBuffer& group, const GBuffer& key, const GDateTime& value)
    {
        SetAs(id, group, key, value);
    }

    // The same, but the value stays when a temporary use is undone.
    static void SetIgnoreTemp(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value);

    // Sets a value as Set does, but only if the key is missing both in the module and in the module into
    // which Set would put it.
    template <typename Value>
    static void SetDefault(int32_t id, const GBuffer& group, const GBuffer& key, const Value& value)
    {
        if (IsOpenForDefault(id, group, key))
            Set(id, group, key, value);
    }

    // Remove a key or a group from a module. What Set would put into the shared file is removed from there
    // and also from the named module, because otherwise CopySharedPreferences would bring it back.
    static void Remove(int32_t id, const GBuffer& group, const GBuffer& key);
    static void Remove(int32_t id, const GBuffer& group);

    // Marks a group as shared or not in the module.
    static void SetPrefSharing(int32_t id, const GBuffer& group, bool isShared);

    // Whether the group is shared. The first module, other than -2, that has a mark for the group decides.
    static bool IsPrefSharing(const GBuffer& group);

    // Copies to the shared module the keys of every shared group that it does not have yet. The second form
    // does so for one group, if it is shared. Each value comes from the first other module that has the key.
    static void CopySharedPreferences();
    static void CopySharedPreferencesGroup(const GBuffer& group);

    // Values that are hard to read in the file (GStringSupport::Scramble); this does not protect secrets.
    static void SetScramble(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value)
    {
        SetAs(id, group, key, GStringSupport::Scramble(value));
    }
    static void SetScramble(int32_t id, const GBuffer& group, const GBuffer& key, int32_t value)
    {
        SetScramble(id, group, key, PrefText<int32_t>::To(value));
    }
    static GString GetUnscramble(const GBuffer& group, const GBuffer& key)
    {
        return GStringSupport::DeScramble(Get(group, key));
    }
    static GString GetUnscramble(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return GStringSupport::DeScramble(Get(id, group, key));
    }
    static int32_t GetUnscrambleInt32(const GBuffer& group, const GBuffer& key)
    {
        return PrefText<int32_t>::From(GetUnscramble(group, key));
    }
    static int32_t GetUnscrambleInt32(int32_t id, const GBuffer& group, const GBuffer& key)
    {
        return PrefText<int32_t>::From(GetUnscramble(id, group, key));
    }

private:
    using Kind = GVariableSubstitution::Kind;

    template <typename Value>
    static Value As(const GString* stored)
    {
        if constexpr (std::is_same_v<Value, GPathName>)
            return LoadPathName(stored);  // raises nothing
        else
            return PrefText<Value>::From(Load(PrefText<Value>::cKind, stored));
    }
    template <typename Value>
    static bool GetAs(const GString* stored, Value& value)
    {
        value = As<Value>(stored);
        return stored != nullptr;
    }
    template <typename Value>
    static void SetAs(int32_t id, const GBuffer& group, const GBuffer& key, const Value& value)
    {
        SetText(id, group, key, Store(PrefText<Value>::cKind, PrefText<Value>::To(value)));
    }

    static const GString* Find(const GBuffer& group, const GBuffer& key);
    static const GString* Find(int32_t id, const GBuffer& group, const GBuffer& key);
    static const GString* FindNonShared(const GBuffer& group, const GBuffer& key);
    static bool IsOpenForDefault(int32_t id, const GBuffer& group, const GBuffer& key);
    static GPrefModule* FindShared(int32_t id, const GBuffer& group);
    static GPrefModule* GetTarget(int32_t id, const GBuffer& group);
    static GString Store(Kind kind, const GString& text);
    static GString Load(Kind kind, const GString* stored);
    static GPathName LoadPathName(const GString* stored);
    static void SetText(int32_t id, const GBuffer& group, const GBuffer& key, const GString& stored);
};
