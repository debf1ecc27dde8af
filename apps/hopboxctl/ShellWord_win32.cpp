#include "apps/hopboxctl/ShellWord.h"

#include <QRegularExpression>

// As programs split their command line: a backslash is one by itself but before a quotation mark.
QString ShellWord::Quote(const QString& word)
{
    QString quoted = word;
    quoted.replace(QRegularExpression(QStringLiteral("(\\\\*)\"")), QStringLiteral("\\1\\1\\\""));
    quoted.replace(QRegularExpression(QStringLiteral("(\\\\+)$")), QStringLiteral("\\1\\1"));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}
