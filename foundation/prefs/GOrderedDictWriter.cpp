#include "foundation/prefs/GOrderedDictWriter.h"

#include "foundation/prefs/PrefMarkers.h"

GOrderedDictWriter::GOrderedDictWriter() : mBlock(mText)
{
    mBlock.AddMarker(PrefMarkers::cBeginDict);
}

GString GOrderedDictWriter::Finish()
{
    mBlock.AddMarker(PrefMarkers::cEndDict);
    mBlock.Flush();
    return mText;
}
