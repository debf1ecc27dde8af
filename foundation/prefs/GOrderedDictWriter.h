#pragma once

#include "foundation/core/GString.h"
#include "foundation/prefs/PrefBlockText.h"

// Writes a dictionary block with its entries in the order in which they are added: for records with a fixed
// order of keys.
//
//     GOrderedDictWriter writer;
//     writer.Add(QStringLiteral("ActorName"), actorName);
//     writer.Add(QStringLiteral("IsActive"), GStringSupport::FromBool(isActive));
//     const GString record = writer.Finish();
class GOrderedDictWriter
{
public:
    GOrderedDictWriter();

    // A key must not be added twice: readers keep the last.
    void Add(const GString& key, const GString& value) { mBlock.AddEntry(key, value); }
    void Add(const GBuffer& key, const GString& value) { mBlock.AddEntry(key, value); }

    // Ends the block and gives its text. The writer can't be used after that.
    GString Finish();

private:
    GString mText;
    PrefBlockText mBlock;
};
