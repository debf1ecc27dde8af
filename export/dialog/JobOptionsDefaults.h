#pragma once

#include "widgets/GCUSPDFSettingsAdjWdt.h"

struct HopboxRecord;

// What the job options in a Hopbox's project give for the values that its user can adjust, as far as they
// name them; nothing where the project or its job options can't be read, which is logged.
AdjustmentDefaults ReadJobOptionsDefaults(const HopboxRecord& record);
