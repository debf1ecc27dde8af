#pragma once

#include "foundation/prefs/GPrefGroups.h"

class IPDFExportPreferences;

// Puts a Hopbox's own output settings over those that the host has read from the job options. What they mean
// is AdjustmentValues': a value that is absent, or says nothing, leaves what the job options say.
void ApplyOutputSettings(const GPrefGroup& settings, IPDFExportPreferences& preferences);
