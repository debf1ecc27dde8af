#pragma once

#include "foundation/prefs/GPrefGroups.h"

class IPDFExportPreferences;

// Writes a Hopbox's own output settings over those that the host has read from the job options.
// AdjustmentValues explains them: if a value is missing or has no meaning, the job options decide.
void ApplyOutputSettings(const GPrefGroup& settings, IPDFExportPreferences& preferences);
