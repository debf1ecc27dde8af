#include "apps/hopboxctl/JobOptionsCheck.h"

#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"

QString JobOptionsCheck::FindFault(const QString& path)
{
    JobOptions options;
    const GResult read = options.Read(path);
    return read.HasSucceeded() ? JobOptionsRules::FindFault(options) : read.GetReason();
}
