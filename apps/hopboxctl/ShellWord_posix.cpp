#include "apps/hopboxctl/ShellWord.h"

QString ShellWord::Quote(const QString& word)
{
    return QLatin1Char('\'') + QString(word).replace(QLatin1Char('\''), QLatin1String("'\\''")) +
           QLatin1Char('\'');
}
