#include "foundation/prefs/GListReader.h"

#include "foundation/core/GMemoryInputStream.h"
#include "foundation/prefs/GBin2TextStream.h"
#include "foundation/prefs/PrefMarkers.h"

bool GListReader::Read(GBin2TextStream& stream, QStringList& list)
{
    list.clear();
    GString token;
    if (!stream.ReadString(token) || token != PrefMarkers::cBeginList)
        return false;
    stream.SkipWhitespace(true);
    for (;;) {
        stream.SkipWhitespace(false);
        GString element;
        if (!stream.ReadQuotedString(element))
            break;
        static_cast<void>(stream.SkipLine());  // what follows an element counts for nothing
        list.append(element);
    }
    if (stream.ReadString(token) && token == PrefMarkers::cEndList)
        static_cast<void>(stream.SkipLine());  // nor does what follows the end
    return true;
}

bool GListReader::ReadText(const GString& text, QStringList& list)
{
    const auto memory = GMemoryInputStream::CreateOnText(text);
    GBufferedInputStream buffered(*memory);
    GBin2TextStream stream(buffered, GEncoding::GetUTF16());
    return Read(stream, list);
}
