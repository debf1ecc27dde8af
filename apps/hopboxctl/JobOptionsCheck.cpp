#include "apps/hopboxctl/JobOptionsCheck.h"

#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"

QString JobOptionsCheck::FindFault(const QString& path)
{
    JobOptions options;
    QString error;
    return options.Read(path, error) ? JobOptionsRules::FindFault(options) : error;
}
