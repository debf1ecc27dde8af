#pragma once

class HopboxRegistry;
class QJsonArray;
class QJsonObject;

// What the commands say of a registry whose file is damaged: where, and where the damaged file is kept. They
// say nothing of one that was read whole.
namespace DamageNotice
{
// Prints the notice on standard error; gives the exit status of a command that only read: it failed when
// entries may be missing from its answer.
int Tell(const HopboxRegistry& registry);

// Adds the notice to an answer in JSON: the key "Damaged" of an object; in a list a last element, an object
// with that key and, for who only knows of records that can't be read, the key "Error".
void AddTo(QJsonObject& answer, const HopboxRegistry& registry);
void AddTo(QJsonArray& answer, const HopboxRegistry& registry);
}  // namespace DamageNotice
