#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>

// Which fonts a document's texts use. Scribus itself tells those that anything names, styles without any text
// among them.
namespace SlaFonts
{
// The names, from the text of a document in the present form that Scribus writes. A text is what stands in
// any frame, on a page, on a master page or beside them; blanks count, an empty paragraph does not. Form
// fields count too. In a document with footnotes, whose texts are packed, every font that is named counts.
QSet<QString> FindUsed(const QByteArray& text);
}  // namespace SlaFonts
