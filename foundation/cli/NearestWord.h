#pragma once

#include <QString>
#include <QStringList>

// The word of a list that somebody may have meant who typed `word`: the one that the fewest letters have to
// be changed, added, left out or swapped for, the first of several, whatever their case. Empty when none is
// near enough to be likely.
QString FindNearestWord(const QString& word, const QStringList& words);

// The same as a question for the end of an error, " Did you mean \"set\"?"; empty when there is no such word.
QString AskForNearestWord(const QString& word, const QStringList& words);
