#pragma once

#include <cstdint>

class QFileInfo;

namespace Morvane
{
// The system in the high byte of an entry's "made by" field, which tells how its attributes are to be read.
uint16_t getMadeBy();

// The half of an entry's attributes in which systems like Unix keep the kind and the rights of a file; 0 on
// systems that have none.
uint32_t getUnixAttributes(const QFileInfo& source);
}  // namespace Morvane
