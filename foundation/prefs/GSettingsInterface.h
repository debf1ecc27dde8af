#pragma once

#include "foundation/core/GString.h"

// Settings that can be read and changed by group and key, wherever they are stored.
class GSettingsInterface
{
public:
    GSettingsInterface() = default;
    virtual ~GSettingsInterface() = default;
    GSettingsInterface(const GSettingsInterface&) = delete;
    GSettingsInterface& operator=(const GSettingsInterface&) = delete;

    // The value; the empty text when there is none. The reference is valid until the next change.
    virtual const GString& Get(const GBuffer& group, const GBuffer& key) const = 0;

    virtual void Set(const GBuffer& group, const GBuffer& key, const GString& value) = 0;

    virtual bool Has(const GBuffer& group, const GBuffer& key) const = 0;
};
