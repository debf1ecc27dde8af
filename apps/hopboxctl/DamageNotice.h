#pragma once

class HopboxRegistry;

// What the commands say of a registry whose file is damaged: where, and where the damaged file is kept. They
// say nothing of one that was read whole.
namespace DamageNotice
{
// Prints the notice on standard error, and puts it into the answer in JSON; gives the exit status of a
// command that only read: it failed when entries may be missing from its answer.
int Tell(const HopboxRegistry& registry);
}  // namespace DamageNotice
