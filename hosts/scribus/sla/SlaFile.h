#pragma once

#include "foundation/core/GResult.h"

#include <QByteArray>
#include <QString>

// A document's file, as bytes of XML: with or without compression by gzip, which is told by the content, not
// by the name.
namespace SlaFile
{
// No document is larger, unpacked; one that claims to be is refused, whatever it is packed as.
constexpr qint64 cMostBytes = 256 * 1024 * 1024;

// Looks at the first bytes alone: fails when the file can't be opened, or does not begin as a document does.
GResult CheckBeginning(const QString& path);

// Fails when the file can't be read to its end, unpacks to more than the limit, or its content does not begin
// as a document does. `isPacked` says whether it was compressed.
GResult Read(const QString& path, QByteArray& text, bool& isPacked);

// Writes a file whole or not at all; one that is there is replaced.
GResult Write(const QString& path, const QByteArray& text, bool isPacked);
}  // namespace SlaFile
