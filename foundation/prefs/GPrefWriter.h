#pragma once

#include "foundation/prefs/GPrefGroups.h"

#include <QStringList>

class GText2BinStream;

// Writes settings texts. Groups and entries are written in the order of their dictionaries' slots, so the
// same content made in the same way gives the same text everywhere. For a block in an order of your own, use
// GOrderedDictWriter.
namespace GPrefWriter
{
// Writes a document. Groups without entries are left out.
void WriteDocument(GText2BinStream& stream, const GPrefGroups& groups);

// Writes a dictionary block, or appends it to a text that will be a value.
void WriteDict(GText2BinStream& stream, const GDict<GBuffer, GString>& dict);
void WriteDict(GText2BinStream& stream, const GDict<GString, GString>& dict);
void AppendDict(GString& text, const GDict<GBuffer, GString>& dict);
void AppendDict(GString& text, const GDict<GString, GString>& dict);

// Appends a list block to a text that will be a value.
void AppendList(GString& text, const QStringList& list);
}  // namespace GPrefWriter
