#include "export/dialog/JobOptionsDefaults.h"

#include "foundation/core/GException.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistryEntry.h"
#include "hopbox/TemporaryFolder.h"
#include "joboptions/JobOptions.h"

namespace
{
GResult Read(const HopboxRecord& record, JobOptions& options)
{
    try {
        const TemporaryFolder folder;
        const HopboxProject project(record.entry.contextFilePath);
        GPathName file;
        return project.ExtractJobOptions(folder.GetPathName(), file).Then([&] {
            return options.Read(file.GetNativePath());
        });
    } catch (const GException& error) {
        return GResult::Failure(error.GetDescription());
    }
}

std::optional<bool> GetSwitch(const JobOptions& options, const char* key)
{
    const PostScriptValue* value = options.FindLayoutSetting(key);
    return value != nullptr && value->Is(PostScriptValue::Type::Boolean)
               ? std::make_optional(value->GetBoolean())
               : std::nullopt;
}

std::optional<double> GetLength(const PostScriptValue* value)
{
    return value != nullptr && value->Is(PostScriptValue::Type::Number)
               ? std::make_optional(value->GetNumber())
               : std::nullopt;
}
}  // namespace

AdjustmentDefaults ReadJobOptionsDefaults(const HopboxRecord& record)
{
    AdjustmentDefaults defaults;
    JobOptions options;
    if (const GResult read = Read(record, options); !read.HasSucceeded()) {
        GTrace::Error(QStringLiteral("ReadJobOptionsDefaults"), read.GetReason());
        return defaults;
    }
    for (size_t mark = 0; mark < defaults.marks.size(); ++mark)
        defaults.marks.at(mark) = GetSwitch(options, AdjustmentValues::cMarks.at(mark).jobOptions);
    defaults.weight = GetLength(options.FindLayoutSetting("MarksWeight"));
    defaults.offset = GetLength(options.FindLayoutSetting("MarksOffset"));
    defaults.documentBleed = GetSwitch(options, "UseDocumentBleed");
    const PostScriptValue* bleeds = options.FindLayoutSetting("BleedOffset");
    if (bleeds != nullptr && bleeds->GetItems().size() == defaults.bleeds.size())
        for (size_t bleed = 0; bleed < defaults.bleeds.size(); ++bleed)
            defaults.bleeds.at(bleed) = GetLength(&bleeds->GetItems().at(bleed));
    return defaults;
}
