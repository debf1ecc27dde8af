#pragma once

#include <QByteArray>

// Page numbers of documents that go on from one to the next.
namespace SlaNumbering
{
// The text of a document, in Scribus's present form, with its first page's number `first`, 1 at least. A
// later section that goes on from the one before goes on from it still; one that begins anew stays, as does
// how numbers are written. `next` is the number for the first page behind the document.
QByteArray Continue(const QByteArray& text, int first, int& next);
}  // namespace SlaNumbering
