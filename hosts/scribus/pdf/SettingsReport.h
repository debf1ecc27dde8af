#pragma once

#include <QByteArray>
#include <QJsonArray>

class JobOptions;

// What people and scripts are told about settings.
namespace SettingsReport
{
// The settings of job options that are not honoured as they stand, in the file's order: objects with "key",
// "asked" (the value as job options write it), "answer" ("approximated", "not possible" or "unknown") and
// "note". What has no meaning for an export is not among them.
QJsonArray Make(const JobOptions& options);

// The tables of all known settings, for docs/job-options.md.
QByteArray MakePage();
}  // namespace SettingsReport
