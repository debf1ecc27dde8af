#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

class GBin2TextStream;

// Reads list blocks. What stands behind an element on its line is ignored, and a missing end marker does no
// harm.
namespace GListReader
{
// Reads the block that comes next; false, with an empty list, when none does.
[[nodiscard]] bool Read(GBin2TextStream& stream, QStringList& list);

// Reads a block that is the value of an entry; a byte order mark may lead the text.
[[nodiscard]] bool ReadText(const GString& text, QStringList& list);
}  // namespace GListReader
