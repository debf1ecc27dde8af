#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/PrefText.h"

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

class GPrefModule;

// The process-wide store of settings: a stack of modules, each under a number, asked from the highest number
// to the lowest. The first module that has a key supplies its value; a key that none has reads as the empty
// text.
//
// A group can be shared: it then lives in module -2, the file that all programs of the user share. Where
// there is no module -2, a shared group stays where it is.
//
// Values are texts; the typed operations convert to and from them. Booleans are "true" and "false", and any
// other text is false. A text that is no number reads as 0, one that is no path as the empty path, one that
// is no moment as none.
//
// Used by one thread. What a module raises comes through; see the modules.
class GPreferences
{
public:
    // The numbers of the default modules. An application's own, from 0 upwards, come before them.
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

    // Flushes every module and empties the store. When a flush raises, the store is emptied all the same and
    // the first exception comes through.
    static void Finalize();

    // Makes the default modules that the flags name and reads their files: "Morvane.uprefs" and the
    // application's name with ".uprefs" in the user's preference folder, the name with ".sprefs" in that of
    // all users.
    static void SetDefaultModules(const GString& applicationName, uint32_t flags);

    // Puts a module under a number, in place of the one that is there. The store owns it in the first
    // form; in the second it belongs to the caller and outlives its place in the store.
    static void SetPrefModule(int32_t id, std::unique_ptr<GPrefModule> module);
    static void SetPrefModule(int32_t id, GPrefModule& module);

    // The module; null when there is none.
    static GPrefModule* GetPrefModule(int32_t id);

    // Takes a module away, without flushing it; deletes it when the store owns it.
    static void RemovePrefModule(int32_t id);

    // The encoding of the modules that there are and of default modules that are made from now on.
    static void SetEncoding(const GEncodingRef& encoding);

    static void AddVariableSubstitution(std::unique_ptr<GVariableSubstitution> substitution);

    // Flushes, or reads again, every module; the latter also copies shared groups (CopySharedPreferences).
    // When a module raises, the others have their turn, and the first exception comes through.
    static void FlushPrefs();
    static void Refresh();

    // Whether any module is dirty.
    static bool IsDirty();

    // Temporary use of every module: see GPrefModule.
    static void StartUsingTempModules();
    static void EndUsingTempModules(bool keep);

    // Sets all values of each given module in the store's module of that number; a number without a module is
    // passed over.
    static void UpdatePreferencesWith(const std::vector<std::pair<int32_t, const GPrefModule*>>& modules);

    // Without a number: in any module. With one: in that module only; none there is the same as no key.
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

    // Give whether a value was found; without one the target becomes empty, 0 or false.
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

    // The value without regard to module -2.
    static GString GetNonSharedPref(const GBuffer& group, const GBuffer& key)
    {
        return As<GString>(FindNonShared(group, key));
    }

    // The names of the module's groups; none when there is no such module.
    static void GetGroupNames(int32_t id, std::vector<GBuffer>& names);

    // Set a value in a module, in module -2 instead of -3 when the group is shared. There has to be such a
    // module: a number without one is a programming error, is reported as an assertion, and nothing is set.
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

    // The same, but the value outlasts a temporary use that is taken back.
    static void SetIgnoreTemp(int32_t id, const GBuffer& group, const GBuffer& key, const GString& value);

    // Sets what Set takes, but only when neither the module nor the one where Set would put it has the key
    // yet.
    template <typename Value>
    static void SetDefault(int32_t id, const GBuffer& group, const GBuffer& key, const Value& value)
    {
        if (IsOpenForDefault(id, group, key))
            Set(id, group, key, value);
    }

    // Remove a key or a group from a module. What Set would have put into the shared file goes from there,
    // and from the module that is named, which would bring it back otherwise (CopySharedPreferences).
    static void Remove(int32_t id, const GBuffer& group, const GBuffer& key);
    static void Remove(int32_t id, const GBuffer& group);

    // Marks a group as shared or not in the module.
    static void SetPrefSharing(int32_t id, const GBuffer& group, bool isShared);

    // Whether the first of the modules other than -2 that has a mark for the group says that it is shared.
    static bool IsPrefSharing(const GBuffer& group);

    // Copies what the shared module lacks of every shared group, or of one group if it is shared, from the
    // other modules: of each key the value that the first of them has.
    static void CopySharedPreferences();
    static void CopySharedPreferencesGroup(const GBuffer& group);

    // Values that are unreadable at a glance in the file (GStringSupport::Scramble); that keeps no secret.
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
