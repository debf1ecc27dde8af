#pragma once

#include "foundation/core/GString.h"

#include <vector>

// For whom a receiver takes messages: names that senders may put on a message. None: for everybody.
class GPPIPCAddresses
{
public:
    GPPIPCAddresses() = default;

    // No name is empty or holds a zero character.
    explicit GPPIPCAddresses(const std::vector<GString>& names) : mNames(names) {}

    // Reads what Encode wrote.
    explicit GPPIPCAddresses(const GBuffer& bytes);

    // Each name in UTF-8 with a zero byte behind it.
    GBuffer Encode() const;

    // Whether a message for this name is taken. One for nobody, which is empty, always is.
    bool Accepts(const GString& name) const;

    const std::vector<GString>& GetNames() const { return mNames; }

    // The names in quotes, with commas between, for people.
    GString GetText() const;

private:
    std::vector<GString> mNames;
};
