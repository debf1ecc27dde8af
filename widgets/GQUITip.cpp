#include "widgets/GQUITip.h"

#include <QRegularExpression>
#include <QTextDocument>

QString GQUITip::FromPlainText(const QString& text)
{
    // A mark of no width, at which a line may break.
    static const QRegularExpression longWord(QStringLiteral("(\\S{40})"));
    QString broken = text;
    broken.replace(longWord, QStringLiteral("\\1\u200B"));
    return Qt::convertFromPlainText(broken, Qt::WhiteSpaceNormal);
}
