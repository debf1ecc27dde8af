#pragma once

#include <QString>
#include <QStringList>

// The word of a list that a person who typed `word` may have meant: the one that needs the fewest letters
// changed, added, left out or swapped. Among equals the first is taken; case does not count. Empty when no
// word is near enough.
QString FindNearestWord(const QString& word, const QStringList& words);

// The same as a question for the end of an error, " Did you mean \"set\"?"; empty when there is no such word.
QString AskForNearestWord(const QString& word, const QStringList& words);
