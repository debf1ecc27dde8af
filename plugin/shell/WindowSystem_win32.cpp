#include "plugin/shell/WindowSystem.h"

QStringList WindowSystem::GetDefaultPlatforms()
{
    return {QStringLiteral("windows")};
}

GString WindowSystem::FindDisplayFault(const GString&)
{
    return {};
}
