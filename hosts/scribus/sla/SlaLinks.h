#pragma once

#include "foundation/core/GResult.h"

#include <QByteArray>
#include <QString>

#include <functional>

// Changes where a document's XML leads to, and nothing else in it.
namespace SlaLinks
{
// Gives the path that is to stand for a link in the place of the one that stands there. Both as they are
// written in the document.
using Rewrite = std::function<QString(const QString& link)>;

// The text with every link rewritten; links that lead nowhere stay empty.
QByteArray RewriteLinks(const QByteArray& text, const Rewrite& rewrite);

// Copies a document to another place with its links absolute, so that they lead to the same files. What is
// there is replaced.
GResult CopyDocument(const QString& source, const QString& target);

// The text with its links, which start at the folder, made absolute.
QByteArray MakeLinksAbsolute(const QByteArray& text, const QString& folder);
}  // namespace SlaLinks
