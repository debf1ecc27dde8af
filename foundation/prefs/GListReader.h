#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

class GBin2TextStream;

// Reads list blocks. The rest of a line after an element is ignored, and the end marker may be missing.
namespace GListReader
{
// Reads the block that comes next; false, with an empty list, when there is none.
[[nodiscard]] bool Read(GBin2TextStream& stream, QStringList& list);

// Reads a block that is the value of an entry; the text may begin with a byte order mark.
[[nodiscard]] bool ReadText(const GString& text, QStringList& list);
}  // namespace GListReader
