#pragma once

#include <QString>

// Whether job options serve for an export: one reading of them for every command that takes or looks at them.
namespace JobOptionsCheck
{
// What keeps the file from being used, for people; empty when nothing does.
QString FindFault(const QString& path);
}  // namespace JobOptionsCheck
