#include "foundation/prefs/GPrefWriter.h"

#include "foundation/prefs/GText2BinStream.h"
#include "foundation/prefs/PrefBlockText.h"
#include "foundation/prefs/PrefMarkers.h"

namespace
{
constexpr int cLookAhead = 64;  // entries

template <typename Key>
void AddDict(PrefBlockText& block, const GDict<Key, GString>& dict)
{
    block.AddMarker(PrefMarkers::cBeginDict);
    // Slot order jumps about in memory. A look at the next entries brings many of them into the cache at
    // once, where writing each would wait for it.
    auto ahead = dict.begin();
    int lookedAt = 0;
    for (const auto& entry : dict) {
        if (lookedAt == 0) {
            size_t length = 0;
            for (; lookedAt < cLookAhead && ahead != dict.end(); ++lookedAt, ++ahead)
                length +=
                    static_cast<size_t>((*ahead).key.size()) + static_cast<size_t>((*ahead).value.size());
            block.Reserve(length);
        }
        --lookedAt;
        block.AddEntry(entry.key, entry.value);
    }
    block.AddMarker(PrefMarkers::cEndDict);
}

// Target is a stream or a text.
template <typename Target, typename Key>
void PutDict(Target& target, const GDict<Key, GString>& dict)
{
    PrefBlockText block(target);
    AddDict(block, dict);
    block.Flush();
}
}  // namespace

void GPrefWriter::WriteDocument(GText2BinStream& stream, const GPrefGroups& groups)
{
    PrefBlockText document(stream);
    document.AddMarker(PrefMarkers::cBeginDocument);
    for (const auto& group : groups) {
        if (group.value.IsEmpty())
            continue;
        document.AddEmptyLine();
        document.AddLine(group.key);
        AddDict(document, group.value);
    }
    document.AddEmptyLine();
    document.AddMarker(PrefMarkers::cEndDocument);
    document.Flush();
}

void GPrefWriter::WriteDict(GText2BinStream& stream, const GDict<GBuffer, GString>& dict)
{
    PutDict(stream, dict);
}

void GPrefWriter::WriteDict(GText2BinStream& stream, const GDict<GString, GString>& dict)
{
    PutDict(stream, dict);
}

void GPrefWriter::AppendDict(GString& text, const GDict<GBuffer, GString>& dict)
{
    PutDict(text, dict);
}

void GPrefWriter::AppendDict(GString& text, const GDict<GString, GString>& dict)
{
    PutDict(text, dict);
}

void GPrefWriter::AppendList(GString& text, const QStringList& list)
{
    PrefBlockText block(text);
    block.AddMarker(PrefMarkers::cBeginList);
    for (const GString& element : list)
        block.AddLine(element);
    block.AddMarker(PrefMarkers::cEndList);
    block.Flush();
}
