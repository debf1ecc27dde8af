#pragma once

#include "hopbox/HopboxRegistryEntry.h"

#include <QStringList>

#include <vector>

// The Hopboxes that offer themselves to the plug-in, as the registry held them at one moment. For the main
// thread.
class HopboxList
{
public:
    struct Item
    {
        GString key;   // in the registry
        GString text;  // what the user sees: the name of the PDF settings, or the key where that is empty
        GString recordText;  // can be read

        // Reads the record; most items are never asked for it.
        HopboxRecord GetRecord() const;
    };

    // No Hopbox, and nothing known of those that there are.
    HopboxList() = default;

    // Raises what the registry raises, also when its file is there but can't be read.
    static HopboxList Read();

    // In ascending order of their texts, as the current language (GStringPool) sorts; those of one text in
    // the order of their keys.
    const std::vector<Item>& GetItems() const { return mItems; }

    // The keys of the records that can't be read, in the registry's order. Whether they would offer
    // themselves is not known.
    const QStringList& GetUnreadableKeys() const { return mUnreadableKeys; }

    // Whether these are all that there are: false, too, for a registry whose file is damaged.
    bool IsWhole() const { return mIsWhole; }

    // The groups of the plug-in's settings that belong to the items.
    QStringList GetPreferenceGroups() const;

    // The position of a key among the items; -1 when it is not there.
    int FindKey(const GString& key) const;

    // Makes a Hopbox offer itself no longer; its entry stays in the registry. The entry is changed as it
    // stands by now, so that what another process did to it, or to others, is kept. False when there is no
    // such entry or the registry can't be written.
    [[nodiscard]] static bool Withdraw(const GString& key);

private:
    void Sort();

    std::vector<Item> mItems;
    QStringList mUnreadableKeys;
    bool mIsWhole = false;
};
