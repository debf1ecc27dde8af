#pragma once

#include <QString>

#include <cstdint>

class GPathName;
class HopboxRegistry;

// What the commands say of a damaged registry, and of damaged settings in a project archive: where, and where
// the damaged file is kept. They say nothing of what was read whole.
namespace DamageNotice
{
// Prints the notice on standard error, and puts it into the answer in JSON; gives the exit status of a
// command that only read: it failed when entries may be missing from its answer.
int Tell(const HopboxRegistry& registry);

// Tells it at the end of a command that changes the registry, also of one that ends with an exception.
class AtEnd
{
public:
    explicit AtEnd(const HopboxRegistry& registry) : mRegistry(registry) {}
    ~AtEnd();
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;

private:
    const HopboxRegistry& mRegistry;
};

// The text for settings of an archive that are damaged at a byte. Once the archive was written, the damaged
// one is kept.
enum class Copy
{
    cBeforeChange,
    cKept
};
QString DescribeSettings(const GPathName& archive, int64_t position, Copy copy);

// Puts the same into the answer in JSON.
void SetSettings(const GPathName& archive, int64_t position, Copy copy);
}  // namespace DamageNotice
