#pragma once

#include <QString>

class JobOptions;

// What the values of the well-known settings must be, whatever a host can make of them. With a value that
// breaks a rule no export is made, so tools that take job options refuse them for it.
namespace JobOptionsRules
{
// What is wrong with the first setting that breaks its rule, as in "\"CompatibilityLevel\" takes a number
// from 1 to 2"; empty when none does. A setting that no rule is for passes, and so does one whose value is
// null.
QString FindFault(const JobOptions& options);
}  // namespace JobOptionsRules
