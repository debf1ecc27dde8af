#pragma once

#include "foundation/core/GString.h"

#include <vector>

// The addresses for which a receiver takes messages: names that senders may put on a message. Without names
// it takes all messages.
class GPPIPCAddresses
{
public:
    GPPIPCAddresses() = default;

    // No name may be empty or contain a zero character.
    explicit GPPIPCAddresses(const std::vector<GString>& names) : mNames(names) {}

    // Reads what Encode wrote.
    explicit GPPIPCAddresses(const GBuffer& bytes);

    // Each name in UTF-8, followed by a zero byte.
    GBuffer Encode() const;

    // Whether a message for this name is taken. A message without a name (empty) is always taken.
    bool Accepts(const GString& name) const;

    const std::vector<GString>& GetNames() const { return mNames; }

    // The names in quotes, with commas between, for people.
    GString GetText() const;

private:
    std::vector<GString> mNames;
};
