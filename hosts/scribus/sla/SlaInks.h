#pragma once

#include <QByteArray>
#include <QStringList>

// The inks that a document's objects and texts ask for. Unused swatches are not among them.
namespace SlaInks
{
// From the text of a document in Scribus's present form: process inks first, then spot inks by name, and
// whether there are colours that are none of inks. A colour counts when an object, a text or a style that one
// of them names has it. What images hold is not looked at.
QStringList Find(const QByteArray& text);
}  // namespace SlaInks
