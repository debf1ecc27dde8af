#pragma once

#include <QString>

class JobOptions;

// The rules for the values of the well-known settings, even if a host accepts other values. If a value breaks
// a rule, no export is made; so tools that take job options refuse such a file.
namespace JobOptionsRules
{
// What is wrong with the first setting that breaks its rule, as in "\"CompatibilityLevel\" takes a number
// from 1 to 2"; empty when no setting breaks a rule. Settings without a rule, and settings whose value is
// null, are accepted.
QString FindFault(const JobOptions& options);
}  // namespace JobOptionsRules
