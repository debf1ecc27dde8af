#pragma once

#include "plugin/host/IPlugIn.h"

// Tells the host where the plug-in's own resources are: in the folder "Resources" beside the module.
class WResourceAccess final : public WBaseResourceAccess
{
public:
    [[nodiscard]] bool GetResourceFile(ResourceFileInfo& info) const override;
};
