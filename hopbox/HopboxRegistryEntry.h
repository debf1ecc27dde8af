#pragma once

#include "foundation/core/GPathName.h"

#include <utility>
#include <vector>

// What the registry holds of one Hopbox application beside its actor name.
struct HopboxRegistryEntry
{
    GPathName applicationPath;
    GPathName contextFilePath;  // the Hopbox's project archive
    bool isVirtualPrinter = false;
    bool isPlugin = false;  // whether the Hopbox offers itself to the plug-in
    GString pdfSettings;    // the name under which the plug-in lists the Hopbox
    GString hopboxName;     // the name that the Hopbox shows to its user
    GPathName hopboxIconPath;
    bool isActive = false;

    bool operator==(const HopboxRegistryEntry& other) const;
    bool operator!=(const HopboxRegistryEntry& other) const { return !(*this == other); }
};

// The names of the values of a record, in the order in which they are written.
namespace HopboxRecordKey
{
extern const GString cActorName;
extern const GString cApplicationPath;
extern const GString cContextFilePath;
extern const GString cPDFSettings;
extern const GString cHopboxName;
extern const GString cHopboxIconPath;
extern const GString cIsVirtualPrinter;
extern const GString cIsPlugin;
extern const GString cIsActive;
}  // namespace HopboxRecordKey

// An entry as it stands in the registry file, both ways. docs/formats/registry.md has the form.
struct HopboxRecord
{
    GString actorName;
    HopboxRegistryEntry entry;

    // The text of each value with its name: all nine, always in the same order.
    std::vector<std::pair<GString, GString>> GetValues() const;

    GString ToText() const;

    // Takes the values of a record; what the text doesn't hold becomes empty or false. False, with the record
    // unchanged, when the text is no record or names a path that no file of this system can have.
    [[nodiscard]] bool FromText(const GString& text);

    // The actor name, or the key under which the registry holds the record where that is empty.
    const GString& GetName(const GString& key) const { return actorName.isEmpty() ? key : actorName; }

    // The group of the plug-in's settings that belongs to the record under that key: its name, or the key
    // where the name is that of a group that the plug-in keeps for itself.
    const GString& GetPreferenceGroup(const GString& key) const;
};

// What a list of Hopboxes shows of a record, which is read in a fraction of the time.
struct HopboxOffer
{
    bool isPlugin = false;
    GString pdfSettings;

    // Takes the values of a record, as HopboxRecord does and of the same texts; false, with nothing changed,
    // for all others.
    [[nodiscard]] bool FromText(const GString& text);
};
