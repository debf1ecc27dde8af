#pragma once

#include "foundation/core/GPathName.h"

#include <utility>
#include <vector>

// What the registry holds about one Hopbox application, apart from its actor name.
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

// An entry of the registry file, for reading and for writing. docs/formats/registry.md has the form.
struct HopboxRecord
{
    GString actorName;
    HopboxRegistryEntry entry;

    // The text of each value with its name: all nine, always in the same order.
    std::vector<std::pair<GString, GString>> GetValues() const;

    GString ToText() const;

    // Takes the values of a record; a value that the text doesn't hold becomes empty or false. If the text is
    // not a record, or holds a path that no file of this system can have, gives false and leaves the record
    // unchanged.
    [[nodiscard]] bool FromText(const GString& text);

    // The actor name; if it is empty, the key under which the registry holds the record.
    const GString& GetName(const GString& key) const { return actorName.isEmpty() ? key : actorName; }

    // The group of the plug-in's settings that belongs to the record under that key. It is the record's name;
    // or the key, if the name is the name of a group that the plug-in keeps for itself.
    const GString& GetPreferenceGroup(const GString& key) const;
};

// The part of a record that a list of Hopboxes shows. Reading it takes much less time than reading the
// record.
struct HopboxOffer
{
    bool isPlugin = false;
    GString pdfSettings;

    // Takes the values of a record. It accepts the same texts as HopboxRecord; for all others it gives false
    // and changes nothing.
    [[nodiscard]] bool FromText(const GString& text);
};
