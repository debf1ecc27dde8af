#pragma once

#include <QString>

// Texts for tool tips.
namespace GQUITip
{
// A plain text as a tip that wraps, at any place where a word is too long, and shows nothing of it as markup.
QString FromPlainText(const QString& text);
}  // namespace GQUITip
