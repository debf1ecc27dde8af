#pragma once

#include <QString>

// Texts for tool tips.
namespace GQUITip
{
// Makes a tip from a plain text. The tip wraps lines, and breaks words that are too long; nothing in the text
// is used as markup.
QString FromPlainText(const QString& text);
}  // namespace GQUITip
