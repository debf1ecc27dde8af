#pragma once

#include "foundation/core/GString.h"

// The general group of settings and its keys.
struct GMorvaneGeneralPrefs
{
    static const GBuffer cGroupIDGeneralPrefs;  // "General"

    // The language of the texts, such as "enUS".
    static const GBuffer cPrefIDLanguage;  // "Language"

    // The code of the default unit of lengths.
    static const GBuffer cPrefIDUnit;  // "Unit"
};
