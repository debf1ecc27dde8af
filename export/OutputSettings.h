#pragma once

#include "foundation/prefs/GPrefGroups.h"

class IPDFExportPreferences;

// Puts a Hopbox's own output settings over those that the host has read from the job options. A key that is
// absent, or whose length is no length, leaves what the job options say.
//
// "BleedChoice": 1 takes the four "Bleed…Value" lengths instead of the document's bleed, 2 the document's.
// "BleedSlugArea" and "PrintSpreads" only turn theirs on. "PrinterMarks" turns all marks on or off; "Trim",
// "Bleed", "PrinterRegistration", "ColorBars" and "PageInfo" one each, and they come after it. "MarkOffset"
// counts above zero. "MarkWeight" 0 is a line of 0.125 points, 2 one of 0.5, anything else one of 0.25.
// Lengths are in points.
void ApplyOutputSettings(const GPrefGroup& settings, IPDFExportPreferences& preferences);
