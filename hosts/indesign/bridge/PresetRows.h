#pragma once

#include "hosts/indesign/bridge/PresetSettings.h"
#include "joboptions/PostScriptValue.h"

#include <functional>
#include <vector>

class JobOptions;

// A setting of job options that the application's presets have, and what it becomes. The value's type and
// bounds have been looked at before.
struct PresetRow
{
    enum class Section
    {
        Parameters,
        Layout
    };

    // False for a value that the application can't do.
    using Sink = std::function<bool(const PostScriptValue& value, PresetSettings& settings)>;

    Section section;
    const char* key;
    Sink take;

    const PostScriptValue* Find(const JobOptions& options) const;

    // In the order in which the application takes them: an earlier setting allows a later one.
    static const std::vector<PresetRow>& GetAll();

    // Those of images.
    static std::vector<PresetRow> MakeImages();
};
